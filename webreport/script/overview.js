// What is shown of a run as a whole.
(function (report) {
    'use strict';

    const { element } = report.dom;
    const { count, counted, duration } = report.format;
    const { outcomeIcon } = report.marks;
    const { isFailed } = report.model;
    const slowestShown = 8;

    function verdict({ root, testCases, failed }) {
        const total = counted(testCases.length, 'test case', 'test cases');
        if (failed > 0) return count(failed) + ' of ' + total + ' failed.';
        if (isFailed(root))
            return testCases.length === 0
                ? 'No test case ran.'
                : 'Of ' + total + ' none failed, but the run did not go well.';
        return 'None of ' + total + ' failed.';
    }

    /// What went wrong before, between and behind the test cases; in a run of a single test case
    /// all that did.
    function ownFailures(app) {
        const { root, nodes } = app.run;
        const isOwn = (node) => !node.testCase || node.testCase === root;
        const failures = nodes.filter(
            (node) => node.kind === 'entry' && isOwn(node) && isFailed(node),
        );
        const title = root.testCase ? 'Failures' : 'Failures outside of test cases';
        return report.linkBlock(app, title, failures);
    }

    function testLists(app) {
        const tests = app.run.testCases.filter((node) => node !== app.run.root);
        const failed = tests.filter(isFailed);
        const old = failed.filter((node) => !node.isNew);
        const flaky = tests.filter((node) => node.outcome === 'flaky');
        return [
            report.linkBlock(
                app,
                'Newly failing',
                failed.filter((node) => node.isNew),
            ),
            report.linkBlock(app, 'Failing', old),
            report.linkBlock(app, 'Flaky', flaky),
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

    function slowest(tests) {
        return tests
            .filter((node) => node.duration >= 1000)
            .sort((a, b) => b.duration - a.duration)
            .slice(0, slowestShown);
    }

    function lostNotice(run) {
        if (run.ended) return null;
        const text =
            'This run did not end: it was killed, or the machine went down. What had been ' +
            'written until then is here; what was running is marked "not ended".';
        return element('p', { class: 'notice' }, text);
    }

    function runRow(app, run) {
        const { failed } = run;
        const time = run.root.duration;
        return element(
            'tr',
            { 'aria-current': run === app.run ? 'true' : null },
            element(
                'td',
                null,
                element('a', { href: app.addressOf(run, null) }, 'Run ' + (run.index + 1)),
            ),
            element('td', null, report.format.dateTime(run.root.raw.start)),
            element(
                'td',
                null,
                outcomeIcon(run.root),
                ' ',
                failed > 0 ? count(failed) + ' failed' : report.marks.outcomeOf(run.root).label,
            ),
            element('td', { class: 'number' }, count(run.testCases.length)),
            element('td', { class: 'number' }, time === null ? '' : duration(time)),
        );
    }

    function runsTable(app) {
        if (app.runs.length < 2) return null;
        const heads = ['Run', 'Started', 'Outcome', 'Test cases', 'Took'];
        const latest = [...app.runs].reverse().slice(0, 30);
        return element(
            'section',
            { class: 'block' },
            element('h2', null, 'Runs'),
            element(
                'div',
                { class: 'scroll' },
                element(
                    'table',
                    { class: 'runs' },
                    element(
                        'thead',
                        null,
                        element(
                            'tr',
                            null,
                            heads.map((head) => element('th', { scope: 'col' }, head)),
                        ),
                    ),
                    element(
                        'tbody',
                        null,
                        latest.map((run) => runRow(app, run)),
                    ),
                ),
            ),
        );
    }

    function overview(app) {
        return [
            element('p', { class: 'verdict' }, verdict(app.run)),
            lostNotice(app.run),
            report.describe(app.run.root.raw),
            resultCounts(app),
            ownFailures(app),
            testLists(app),
            runsTable(app),
        ];
    }

    report.overview = overview;
})((globalThis.morvexReport = globalThis.morvexReport || {}));
