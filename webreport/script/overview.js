// What is shown of a run as a whole.
(function (report) {
    'use strict';

    const { element } = report.dom;
    const { count, counted } = report.format;
    const { isFailed } = report.model;
    const slowestShown = 8;
    const shortestSlow = 1000;

    function verdict({ root, testCases, failed }) {
        const total = counted(testCases.length, 'test case', 'test cases');
        if (testCases.length === 0) return 'No test case ran.';
        if (failed > 0) return count(failed) + ' of ' + total + ' failed.';
        return isFailed(root)
            ? 'Of ' + total + ' none failed, but the run did not go well.'
            : 'None of ' + total + ' failed.';
    }

    /// What went wrong before, between and after the test cases; in a run of a single test case
    /// all that did.
    function ownFailures(app) {
        const { root, nodes } = app.run;
        const isOwn = (node) => !node.testCase || node.testCase === root;
        const failures = nodes.filter(
            (node) => node.kind === 'entry' && isOwn(node) && isFailed(node),
        );
        const title = root.testCase ? 'Failures' : 'Failures outside of test cases';
        return report.failureBlock(app, title, failures);
    }

    /// Those that take much longer than the others: where all take as long, there is nothing to
    /// look at.
    function slowest(tests) {
        const known = tests
            .filter((node) => node.duration !== null)
            .sort((a, b) => b.duration - a.duration);
        const median = known.length > 0 ? known[Math.floor(known.length / 2)].duration : 0;
        return known
            .slice(0, slowestShown)
            .filter((node) => node.duration >= Math.max(shortestSlow, 2 * median));
    }

    function testLists(app) {
        const tests = app.run.testCases.filter((node) => node !== app.run.root);
        const failed = tests.filter(isFailed);
        const isNew = (node) => node.isNew;
        const flaky = tests.filter((node) => node.outcome === 'flaky');
        return [
            report.failureBlock(app, 'Newly failing', failed.filter(isNew)),
            report.failureBlock(
                app,
                'Failing',
                failed.filter((node) => !isNew(node)),
            ),
            report.failureBlock(app, 'Flaky', flaky),
            report.linkBlock(app, 'Slowest', slowest(tests)),
        ];
    }

    function resultCounts(app) {
        const counts = app.run.root.counts;
        const kinds = report.outcomes.entryKinds.filter((kind) => counts[kind.key]);
        return element(
            'dl',
            { class: 'counts' },
            kinds.map((kind) =>
                element(
                    'div',
                    null,
                    element(
                        'dt',
                        null,
                        report.dom.icon(kind.icon),
                        counts[kind.key] === 1 ? kind.label : kind.plural,
                    ),
                    element('dd', null, count(counts[kind.key])),
                ),
            ),
        );
    }

    function lostNotice(app) {
        if (app.run.ended) return null;
        const text =
            'This run was interrupted: it was killed, or the machine went down. What had been ' +
            'written until then is here; what was running is marked "unfinished".';
        const innermost = app.run.nodes.find((node) => node.brokeOff && node.parent);
        return element(
            'div',
            { class: 'notice' },
            element('p', null, text),
            innermost ? ['It broke off in ', report.nodeLink(app, innermost)] : null,
        );
    }

    function overview(app) {
        return [
            element('p', { class: 'verdict' }, verdict(app.run)),
            lostNotice(app),
            report.describe(app.run.root.raw),
            resultCounts(app),
            ownFailures(app),
            testLists(app),
            report.runsTable(app),
        ];
    }

    report.overview = overview;
})((globalThis.morvexReport = globalThis.morvexReport || {}));
