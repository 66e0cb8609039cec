// The top of the page: which run it is, and what came of its test cases.
(function (report) {
    'use strict';

    const { element, button } = report.dom;
    const { count, counted, dateTime, duration } = report.format;

    function runLabel(run) {
        const { failed } = run;
        const outcome = !run.ended
            ? 'not ended'
            : failed > 0
              ? failed + ' failed'
              : report.marks.outcomeOf(run.root).label.toLowerCase();
        return (
            'Run ' +
            (run.index + 1) +
            ' · ' +
            dateTime(run.root.raw.start) +
            ' · ' +
            run.name +
            ' · ' +
            outcome
        );
    }

    function runPicker(app) {
        if (app.runs.length < 2) return null;
        const options = [...app.runs]
            .reverse()
            .map((run) => element('option', { value: String(run.index) }, runLabel(run)));
        const select = element(
            'select',
            {
                'id': 'runPicker',
                'aria-label': 'Run',
                'onchange': () => app.showRun(app.runs[Number(select.value)]),
            },
            options,
        );
        select.value = String(app.run.index);
        return select;
    }

    function totals(run) {
        const time = run.root.duration === null ? [] : [duration(run.root.duration)];
        const more = run.attempts - run.testCases.length;
        const retried = more > 0 ? [counted(more, 'retry', 'retries')] : [];
        return [
            dateTime(run.root.raw.start),
            ...time,
            counted(run.testCases.length, 'test case', 'test cases'),
            ...retried,
        ]
            .filter(Boolean)
            .join(' · ');
    }

    function bar(counts) {
        const outcomes = report.outcomes.testOutcomes.filter((outcome) => counts[outcome.key]);
        const label = outcomes
            .map((outcome) => count(counts[outcome.key]) + ' ' + outcome.label.toLowerCase())
            .join(', ');
        return element(
            'div',
            { 'class': 'bar', 'role': 'img', 'aria-label': label || 'No test cases' },
            outcomes.map((outcome) => {
                const part = element('span', {
                    class: 'part tone-' + outcome.icon,
                    title: counts[outcome.key] + ' ' + outcome.label,
                });
                part.style.flexGrow = counts[outcome.key];
                return part;
            }),
        );
    }

    function render(app, host) {
        const { run } = app;
        host.replaceChildren();
        report.dom.append(host, [
            element(
                'div',
                { class: 'headline' },
                element(
                    'h1',
                    null,
                    element('a', { href: app.addressOf(run, null) }, run.name || 'Test report'),
                ),
                run.ended ? null : report.marks.badge('unfinished', 'not ended'),
                element('p', { class: 'totals' }, totals(run)),
                runPicker(app),
                button(
                    '',
                    () => report.help.toggle(),
                    {
                        'class': 'helpbutton',
                        'aria-label': 'Keys and help',
                        'title': 'Keys and help (?)',
                    },
                    '?',
                ),
            ),
            bar(report.model.outcomeCounts(run)),
        ]);
    }

    /// What the tab of the browser shows.
    function setTitle(run) {
        const { failed } = run;
        document.title =
            (failed > 0 ? count(failed) + ' failed – ' : '') + (run.name || 'Test report');
        const image = report.model.isFailed(run.root) ? 'failed' : 'passed';
        document.getElementById('favicon').setAttribute('href', 'image/' + image + '.svg');
    }

    report.header = { render, setTitle };
})((globalThis.morvexReport = globalThis.morvexReport || {}));
