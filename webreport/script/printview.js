// What goes on paper: totals, causes, the test cases with their outcomes, and the failures in full. The
// list on the screen holds only what is in view, so it is no help here.
(function (report) {
    'use strict';

    const { element } = report.dom;
    const mostCauses = 50;
    const mostTests = 2000;
    const mostFailures = 200;

    function testRow(node) {
        return element(
            'tr',
            null,
            element('td', null, report.marks.outcomeBadge(node), report.marks.extraBadges(node)),
            element('td', null, element('bdi', null, report.marks.nodeTitle(node))),
            element(
                'td',
                { class: 'number' },
                node.duration === null ? '' : report.format.duration(node.duration),
            ),
        );
    }

    /// The test cases below the name of their suite where there are several.
    function testRows({ run }, tests) {
        if (run.parts.length < 2) return tests.map(testRow);
        return run.parts.flatMap(({ node }) => {
            const own = tests.filter((one) => one.id >= node.id && one.id <= node.end);
            const name = element('bdi', null, node.name);
            const head = element('th', { colspan: '3' }, name, report.dom.time(node.raw.start));
            return own.length > 0 ? [element('tr', null, head), ...own.map(testRow)] : [];
        });
    }

    function causeRow(cause) {
        const cells = [
            report.format.counted(cause.testCases.length, 'test case', 'test cases'),
            element('bdi', null, report.causesView.titleOf(cause)),
            report.causesView.factsOf(cause).join(' · '),
        ];
        return element(
            'tr',
            null,
            cells.map((content) => element('td', null, content)),
        );
    }

    function causes({ causes: all }) {
        if (all.length === 0) return null;
        const rows = all.slice(0, mostCauses).map(causeRow);
        return [
            element('h2', null, 'Failures by cause'),
            shortened(all, mostCauses, 'causes'),
            element('table', { class: 'tests' }, element('tbody', null, rows)),
        ];
    }

    function heading({ run }, findings) {
        const { amounts, textOf } = report.header;
        const facts = [report.dom.time(run.root.raw.start), run.ended ? '' : 'interrupted'];
        return [
            element('h1', null, run.name),
            element(
                'p',
                null,
                facts.filter(Boolean).flatMap((fact, at) => (at > 0 ? [' · ', fact] : [fact])),
            ),
            element('p', null, report.summary.line(findings)),
            element('p', null, amounts(run).map(textOf).join(' · ')),
        ];
    }

    function failure(app, node) {
        const path = report.marks
            .pathOf(node)
            .map((one) => report.marks.shortTitle(one, 80))
            .join(' › ');
        return element(
            'article',
            null,
            element('p', { class: 'note' }, path),
            element(
                'h3',
                null,
                report.marks.outcomeBadge(node),
                ' ',
                element('bdi', null, report.marks.shortTitle(node)),
            ),
            report.detail.entryFacts(app, node),
            report.entryView.entryView(app, node, report.paperViews),
        );
    }

    /// A failure that can't be drawn leaves the others on the paper.
    function failureOrNote(app, node) {
        try {
            return failure(app, node);
        } catch (error) {
            globalThis.reportError(error);
            const title = report.marks.shortTitle(node);
            return element('p', { class: 'note' }, 'Could not be printed: ' + title);
        }
    }

    function shortened(all, most, what) {
        return all.length > most
            ? element(
                  'p',
                  { class: 'note' },
                  'The first ' + most + ' of ' + report.format.count(all.length) + ' ' + what + '.',
              )
            : null;
    }

    function render(app, host) {
        const shown = (node) => app.selection.shown[node.id];
        const tests = app.run.testCases.filter(shown);
        const failures = app.run.nodes.filter(
            (node) => node.kind === 'entry' && report.model.isFailed(node) && shown(node),
        );
        const findings = report.summary.of(app.run, app.run.root);
        const content = [
            heading(app, findings),
            causes(findings),
            element('h2', null, 'Test cases'),
            shortened(tests, mostTests, 'test cases'),
            element(
                'table',
                { class: 'tests' },
                element('tbody', null, testRows(app, tests.slice(0, mostTests))),
            ),
            failures.length > 0 ? element('h2', null, 'Failures') : null,
            shortened(failures, mostFailures, 'failures'),
            failures.slice(0, mostFailures).map((node) => failureOrNote(app, node)),
        ];
        host.replaceChildren();
        report.dom.append(host, content);
    }

    function install(app) {
        const host = document.getElementById('print');
        window.addEventListener('beforeprint', () => render(app, host));
        window.addEventListener('afterprint', () => host.replaceChildren());
    }

    report.printView = { install };
})((globalThis.morvexReport = globalThis.morvexReport || {}));
