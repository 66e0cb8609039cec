// The runs of the data file as a table, the latest first.
(function (report) {
    'use strict';

    const { element, tableHead, time } = report.dom;
    const { count, duration } = report.format;
    const shownRuns = 30;
    const labels = ['Run', 'Started', 'Outcome', 'Test cases', 'Duration'];

    function runRow(app, run) {
        const { root, cases } = run.summary;
        const number = 'Run ' + (run.index + 1);
        const cells = [
            [null, element('a', { href: app.addressOf(run, null) }, number)],
            [null, time(run.raw.start)],
            [null, [report.marks.outcomeIcon(root), ' ', report.marks.runOutcome(run.summary)]],
            ['number', count(cases.size)],
            ['number', root.duration === null ? '' : duration(root.duration)],
        ];
        return element(
            'tr',
            { 'aria-current': run.index === app.run.index ? 'true' : null },
            cells.map(([className, content]) => element('td', { class: className }, content)),
        );
    }

    /// Null for a single run.
    function runsTable(app) {
        if (app.runs.length < 2) return null;
        const body = element('tbody');
        const { before, after, note } = report.windowList(
            body,
            [...app.runs].reverse(),
            app.runs.length - 1 - app.run.index,
            (run) => runRow(app, run),
            shownRuns,
            { before: 'newer', after: 'older' },
        );
        return element(
            'section',
            { class: 'block' },
            element('h2', null, 'Runs'),
            note,
            before,
            element(
                'div',
                { class: 'scroll' },
                element('table', { class: 'runs' }, tableHead(labels), body),
            ),
            after,
        );
    }

    report.runsTable = runsTable;
})((globalThis.morvexReport = globalThis.morvexReport || {}));
