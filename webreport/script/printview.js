// What goes on paper: totals, the test cases with their outcomes, and the failures in full. The
// list on the screen holds only what is in view, so it is no help here.
(function (report) {
    'use strict';

    const { element } = report.dom;
    const mostTests = 2000;
    const mostFailures = 200;

    function testRow(node) {
        return element(
            'tr',
            null,
            element('td', null, report.marks.outcomeBadge(node), report.marks.extraBadges(node)),
            element('td', null, report.marks.nodeTitle(node)),
            element(
                'td',
                { class: 'number' },
                node.duration === null ? '' : report.format.duration(node.duration),
            ),
        );
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
                report.marks.shortTitle(node),
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
        const { amounts, textOf } = report.header;
        const shown = (node) => app.selection.shown[node.id];
        const tests = app.run.testCases.filter(shown);
        const failures = app.run.nodes.filter(
            (node) => node.kind === 'entry' && report.model.isFailed(node) && shown(node),
        );
        const content = [
            element('h1', null, app.run.name),
            element(
                'p',
                null,
                report.dom.time(app.run.root.raw.start),
                app.run.ended ? '' : ' · interrupted',
            ),
            element('p', null, amounts(app.run).map(textOf).join(' · ')),
            element('h2', null, 'Test cases'),
            shortened(tests, mostTests, 'test cases'),
            element(
                'table',
                { class: 'tests' },
                element('tbody', null, tests.slice(0, mostTests).map(testRow)),
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
