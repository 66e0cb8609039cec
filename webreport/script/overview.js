// What is shown of a run as a whole, or of the latest run of each suite.
(function (report) {
    'use strict';

    const { element, tableHead, time } = report.dom;
    const { count, duration } = report.format;
    const { isFailed } = report.model;
    const slowestShown = 8;
    const step = 8;

    /// What went wrong before, between and after the test cases; in a run of a single test case
    /// all that did.
    function ownFailures(app, scope) {
        const isOwn = (node) => !node.testCase || node.testCase === scope;
        const failures = report.model.entriesWithin(
            app.run,
            scope,
            (node) => isOwn(node) && isFailed(node),
        );
        const title = scope.testCase ? 'Failures' : 'Failures outside of test cases';
        return report.failureBlock(app, title, failures);
    }

    function changeLists(app, findings) {
        const { newlyFailing, fixed, added, flaky } = findings;
        const ofThem = (title, nodes, reasonOf) =>
            report.linkBlock(app, title, nodes, { step, reasonOf });
        const rate = (node) =>
            node.flakiness.ran > 1
                ? 'Flaky in ' + node.flakiness.flaky + ' of ' + node.flakiness.ran + ' runs'
                : '';
        return [
            report.failureBlock(app, 'Newly failing', newlyFailing, step),
            ofThem('Fixed', fixed),
            ofThem('New test cases', added),
            ofThem('Flaky', flaky, rate),
        ];
    }

    function missingLink(app, { run, key, raw, isSaid }) {
        const name = raw.name || key;
        const label = run
            ? element('a', { href: app.addressOf(run, run.test(key)) }, name)
            : element('span', null, name);
        return [label, element('span', { class: 'note' }, isSaid ? ' did not run' : '')];
    }

    /// What is missing may have been left out on purpose: the data says so only of some.
    function missingList(app, { missing }) {
        if (missing.length === 0) return null;
        const title = missing.every((one) => one.isSaid) ? 'Did not run' : 'Not in this run';
        return element(
            'section',
            { class: 'block' },
            element('h2', null, title, element('span', { class: 'count' }, count(missing.length))),
            report.growingList(missing, (one) => missingLink(app, one), step, { class: 'plain' }),
        );
    }

    function timeLists(app, { testCases }) {
        const slower = testCases.filter((node) => node.usual !== null);
        const usual = (node) => 'Usually ' + duration(node.usual);
        return [
            report.linkBlock(app, 'Slower than usual', slower, { step, reasonOf: usual }),
            report.linkBlock(
                app,
                'Slowest',
                report.changes.slowest(testCases).slice(0, slowestShown),
            ),
        ];
    }

    function resultCounts({ counts }) {
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

    function lostNotice(app, scope, { parts }) {
        const isLost = ({ source, node }) => source.document.ended === false || node.unfinished;
        const lost = parts.filter(isLost);
        if (lost.length === 0) return null;
        const which =
            parts.length > 1 ? 'The run of ' + lost.map(({ node }) => node.name).join(', ') : 'This run';
        const text =
            which +
            ' was interrupted: it was killed, or the machine went down. What had been ' +
            'written until then is here; what was running is marked "unfinished".';
        const innermost = app.run.nodes
            .slice(scope.id, scope.end + 1)
            .find((node) => node.brokeOff && node.parent);
        return element(
            'div',
            { class: 'notice' },
            element('p', null, text),
            innermost ? ['It was in ', report.nodeLink(app, innermost)] : null,
        );
    }

    function suiteRow(app, { source, node }) {
        const findings = report.summary.of(app.run, node);
        const name = element('a', { href: app.addressOf(source, null) }, node.name);
        const isNamesake = (other) => other.node !== node && other.node.name === node.name;
        const where = app.run.parts.some(isNamesake) ? source.suite.place : '';
        const cells = [
            [
                [report.marks.outcomeIcon(node), '\u00a0', name],
                where ? element('div', { class: 'note' }, where) : null,
            ],
            report.summary.short(findings) || report.marks.outcomeOf(node).label.toLowerCase(),
            count(findings.testCases.length),
            node.duration === null ? '' : duration(node.duration),
            time(node.raw.start),
        ];
        const { place } = source.suite;
        return element(
            'tr',
            { title: place },
            cells.map((content, at) => element('td', { class: at > 1 ? 'number' : null }, content)),
        );
    }

    /// Null where there is but one.
    function suitesTable(app, { parts }) {
        if (parts.length < 2) return null;
        const labels = ['Suite', 'Outcome', 'Test cases', 'Duration', 'Started'];
        const rows = parts.map((part) => suiteRow(app, part));
        return element(
            'section',
            { class: 'block' },
            element('h2', null, 'Suites', element('span', { class: 'count' }, count(rows.length))),
            element(
                'div',
                { class: 'scroll' },
                element(
                    'table',
                    { class: 'runs suites' },
                    tableHead(labels),
                    element('tbody', null, rows),
                ),
            ),
        );
    }

    /// `scope` is the node of a run, or the one that holds several.
    function overview(app, scope) {
        const findings = report.summary.of(app.run, scope);
        return [
            element('p', { class: 'verdict' }, report.summary.line(findings)),
            lostNotice(app, scope, findings),
            report.describe(scope.raw),
            suitesTable(app, findings),
            ownFailures(app, scope),
            report.causesView.causesView(app, findings),
            changeLists(app, findings),
            missingList(app, findings),
            timeLists(app, findings),
            resultCounts(scope),
            report.runsTable(app, scope),
        ];
    }

    report.overview = overview;
})((globalThis.morvexReport = globalThis.morvexReport || {}));
