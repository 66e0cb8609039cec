// A test across the runs, as a strip with one mark for each run.
(function (report) {
    'use strict';

    const { element, icon } = report.dom;
    const { outcomeOf } = report.marks;
    const shownRuns = 40;

    function description({ run, node }) {
        const what = node ? outcomeOf(node).label : 'Did not run';
        const time =
            node && node.duration !== null ? ', ' + report.format.duration(node.duration) : '';
        return (
            'Run ' +
            (run.index + 1) +
            ', ' +
            report.format.dateTime(run.root.raw.start) +
            ': ' +
            what +
            time
        );
    }

    function mark(app, point) {
        const { run, node } = point;
        const title = description(point);
        const here = run === app.run;
        const content = [
            node ? icon(outcomeOf(node).icon) : element('span', { class: 'absent' }, '–'),
            element('span', { class: 'number' }, String(run.index + 1)),
        ];
        if (!node)
            return element(
                'span',
                { 'class': 'point', title, 'aria-label': title, 'role': 'img' },
                content,
            );
        return element(
            'a',
            {
                'class': 'point',
                'href': app.addressOf(run, node),
                title,
                'aria-label': title,
                'aria-current': here ? 'true' : null,
            },
            content,
        );
    }

    /// Null when no other run could know the test.
    function historyView(app, node) {
        const points = report.history.historyOf(app.runs, app.run, node.key);
        if (points.length < 2) return null;
        const failures = points.filter(
            (point) => point.node && report.model.isFailed(point.node),
        ).length;
        const ran = points.filter((point) => point.node).length;
        return element(
            'section',
            { class: 'block history' },
            element('h2', null, 'History'),
            element(
                'p',
                { class: 'note' },
                'Failed in ' + failures + ' of ' + report.format.counted(ran, 'run', 'runs') + '.',
            ),
            element(
                'div',
                { class: 'strip' },
                points.slice(-shownRuns).map((point) => mark(app, point)),
            ),
        );
    }

    report.historyView = historyView;
})((globalThis.morvexReport = globalThis.morvexReport || {}));
