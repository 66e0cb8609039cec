// A test across the runs, as a strip with one mark for each run.
(function (report) {
    'use strict';

    const { element, icon } = report.dom;
    const { counted, dateTime } = report.format;
    const { outcomeOf } = report.marks;
    const shownRuns = 40;

    /// Only the log of a run says that it did not get to a test case.
    function absence(run, { name, testCase }) {
        const isSaid = report.suites.leftOut(run).includes(testCase ? testCase.name : name);
        return isSaid ? 'Did not run' : 'Not in this run';
    }

    function description({ run, node }, shown) {
        const what = node ? outcomeOf(node).label : absence(run, shown);
        const time =
            node && node.duration !== null ? ', ' + report.format.duration(node.duration) : '';
        return dateTime(run.raw.start) + ': ' + what + time;
    }

    /// Which part of a date distinguishes the runs: the year is left out where it is the same.
    function dateRangeOf(points) {
        const years = new Set(points.map(({ run }) => dateTime(run.raw.start).slice(0, 4)));
        return years.size > 1 ? [0, 10] : [5, 10];
    }

    function isShown({ run }, { index }) {
        return run.parts.some(({ source }) => source.index === index);
    }

    /// A link to the node in its run.
    function mark(app, point, shown, dateRange) {
        const { run, node } = point;
        const date = dateTime(run.raw.start).slice(...dateRange);
        const name = 'Run ' + (run.index + 1);
        const title = description(point, shown);
        const here = isShown(app, run);
        return element(
            node ? 'a' : 'span',
            {
                'class': 'point',
                'href': node ? app.addressOf(run, node) : null,
                'role': node ? null : 'img',
                'title': name + ', ' + title,
                // With what is to be seen, for those who speak it.
                'aria-label': name + ' ' + date + ', ' + title,
                'aria-current': here ? 'true' : null,
            },
            node ? icon(outcomeOf(node).icon) : element('span', { class: 'absent' }, '–'),
            element('span', { class: 'number' }, String(run.index + 1)),
            ' ',
            element('span', { class: 'date' }, date),
        );
    }

    function summary(points) {
        const nodes = points.map((point) => point.node).filter(Boolean);
        const cutOff = nodes.filter((node) => node.outcome === 'unfinished').length;
        const failures = nodes.filter(report.model.isFailed).length - cutOff;
        const { flaky, ran } = report.changes.flakiness(nodes);
        const facts = [
            failures > 0 || flaky === 0 ? 'failed in ' + failures : '',
            flaky > 0 ? 'flaky in ' + flaky : '',
        ].filter(Boolean);
        facts[0] += ' of ' + counted(nodes.length, 'run', 'runs');
        if (flaky > 0) facts[facts.length - 1] += ' (' + Math.round((100 * flaky) / ran) + ' %)';
        if (cutOff > 0) facts.push('unfinished in ' + cutOff);
        const text = facts.join(', ') + '.';
        return text[0].toUpperCase() + text.slice(1);
    }

    /// Null when no other run could know the test.
    function historyView(app, node) {
        const points = report.historyOf(app.run, node);
        if (points.length < 2) return null;
        const dateRange = dateRangeOf(points);
        const strip = element('div', { class: 'strip' });
        const here = points.findIndex((point) => isShown(app, point.run));
        const { before, after, note } = report.windowList(
            strip,
            points,
            here,
            (point) => mark(app, point, node, dateRange),
            shownRuns,
            { before: 'older', after: 'newer' },
        );
        return element(
            'section',
            { class: 'block history' },
            element('h2', null, 'History'),
            element('p', { class: 'note' }, summary(points)),
            note,
            strip,
            element('div', { class: 'ways' }, before, after),
        );
    }

    report.historyView = historyView;
})((globalThis.morvexReport = globalThis.morvexReport || {}));
