// The runs of the data file as a table, the latest first.
(function (report) {
    'use strict';

    const { element, tableHead, time } = report.dom;
    const { count, duration } = report.format;
    const shownRuns = 30;
    const labels = ['Run', 'Suite', 'Started', 'Outcome', 'Test cases', 'Duration'];

    function isShown({ run }, { index }) {
        return run.parts.some(({ source }) => source.index === index);
    }

    function runRow(app, run) {
        const { root, cases } = run.summary;
        const number = 'Run ' + (run.index + 1);
        const again = report.suites.isRerun(run) ? ' · rerun' : '';
        const cells = [
            [null, element('a', { href: app.addressOf(run, null) }, number)],
            [null, run.suite.name || ''],
            [null, time(run.raw.start)],
            [
                null,
                [report.marks.outcomeIcon(root), ' ', report.marks.runOutcome(run.summary), again],
            ],
            ['number', count(cases.size)],
            ['number', root.duration === null ? '' : duration(root.duration)],
        ];
        return element(
            'tr',
            { 'aria-current': isShown(app, run) ? 'true' : null },
            cells.map(([className, content]) => element('td', { class: className }, content)),
        );
    }

    function rowsOf(app, runs) {
        const body = element('tbody');
        const middle = runs.findIndex((run) => isShown(app, run));
        const { before, after, note } = report.windowList(
            body,
            runs,
            Math.max(0, middle),
            (run) => runRow(app, run),
            shownRuns,
            { before: 'newer', after: 'older' },
        );
        const table = element('table', { class: 'runs' }, tableHead(labels), body);
        return [note, before, element('div', { class: 'scroll' }, table), after];
    }

    /// Names alone may be the same.
    function labelOf(suite, suites) {
        const isAlone = suites.filter((one) => one.name === suite.name).length === 1;
        return isAlone ? suite.name : suite.name + ' (' + suite.place + ')';
    }

    /// `choose(suite)` gets null for all.
    function suiteFilter(suites, chosen, choose) {
        if (suites.length < 2) return null;
        const options = [
            element('option', { value: '-1' }, 'All suites'),
            ...suites.map((suite, at) =>
                element('option', { value: String(at) }, labelOf(suite, suites)),
            ),
        ];
        const select = element(
            'select',
            {
                'aria-label': 'Runs of',
                'onchange': () => choose(suites[Number(select.value)] || null),
            },
            options,
        );
        select.value = String(suites.indexOf(chosen));
        return select;
    }

    /// Null for a single run. `scope` is the run to be found there, or what holds several.
    function runsTable(app, scope) {
        if (app.runs.length < 2) return null;
        const suites = [...new Set(app.runs.map((run) => run.suite))];
        const part = report.shown.partOf(app.run, scope);
        const host = element('div', null);
        function show(suite) {
            const runs = [...app.runs].reverse().filter((run) => !suite || run.suite === suite);
            host.replaceChildren();
            report.dom.append(host, [rowsOf(app, runs)]);
        }
        const first = part && scope === part.node ? part.source.suite : null;
        show(first);
        return element(
            'section',
            { class: 'block' },
            element('h2', null, 'Runs', suiteFilter(suites, first, show)),
            host,
        );
    }

    report.runsTable = runsTable;
})((globalThis.morvexReport = globalThis.morvexReport || {}));
