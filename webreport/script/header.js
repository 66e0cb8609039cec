// The top of the page: which run it is, and what came of its test cases.
(function (report) {
    'use strict';

    const { element, button } = report.dom;
    const { count, counted, dateTime, duration, locationLink } = report.format;

    function runLabel(run) {
        return 'Run ' + (run.index + 1) + ' · ' + dateTime(run.raw.start) + ' · ' + run.name;
    }

    /// When someone turns to the list: the outcomes of all runs take a while to work out.
    function addOutcomes(app, options) {
        for (const option of options) {
            const run = app.runs[Number(option.value)];
            option.textContent = runLabel(run) + ' · ' + report.marks.runOutcome(run.summary);
        }
    }

    function runPicker(app) {
        if (app.runs.length < 2) return null;
        const options = [...app.runs]
            .reverse()
            .map((run) => element('option', { value: String(run.index) }, runLabel(run)));
        const hasSuites = report.suites.latestOf(app.runs).length > 1;
        const latest = element('option', { value: '-1' }, 'Latest run of each suite');
        const select = element(
            'select',
            {
                'id': 'runPicker',
                'aria-label': 'Run',
                'onpointerdown': () => addOutcomes(app, options),
                'onfocus': () => addOutcomes(app, options),
                'onchange': () => {
                    const run = app.runs[Number(select.value)];
                    if (run) app.showRun(run);
                    else app.showLatest();
                },
            },
            hasSuites ? latest : null,
            options,
        );
        select.value = String(app.run.index);
        return select;
    }

    /// To the pages that `--coverage` attaches to a run.
    function coverageLinks({ parts }) {
        const isPage = ({ raw }) =>
            /\/uicoverage(_\d+)?\.html$/.test(raw.uri) && locationLink(raw.uri);
        return parts.flatMap(({ node }) =>
            node.children.filter(isPage).map(({ raw }) =>
                element(
                    'a',
                    { href: locationLink(raw.uri), target: '_blank', rel: 'noopener' },
                    parts.length > 1 ? 'UI coverage of ' + node.name : 'UI coverage',
                ),
            ),
        );
    }

    function totals(run) {
        const took = run.root.duration === null ? '' : duration(run.root.duration);
        const more = run.attempts - run.testCases.length;
        const facts = [
            report.dom.time(run.root.raw.start),
            took,
            counted(run.testCases.length, 'test case', 'test cases'),
            more > 0 ? counted(more, 'retry', 'retries') : '',
            ...coverageLinks(run),
        ];
        return facts.filter(Boolean).flatMap((fact, index) => (index > 0 ? [' · ', fact] : [fact]));
    }

    function toggleOnly(app, key) {
        app.changeFilters((state) => report.criteria.toggleOnlyTests(state, key));
    }

    /// The outcomes that occur, as `{key, label, icon, amount}`.
    function amounts(run) {
        const counts = report.model.outcomeCounts(run);
        return report.outcomes.testOutcomes
            .filter((outcome) => counts[outcome.key])
            .map((outcome) => ({ ...outcome, amount: counts[outcome.key] }));
    }

    function textOf({ amount, label, many = label }) {
        return counted(amount, label, many).toLowerCase();
    }

    /// For the eye and the mouse; the legend has the same as buttons.
    function bar(app) {
        return element(
            'div',
            { 'class': 'bar', 'aria-hidden': 'true' },
            amounts(app.run).map((outcome) => {
                const part = element('span', {
                    class: 'part tone-' + outcome.icon,
                    title: textOf(outcome),
                    onclick: () => toggleOnly(app, outcome.key),
                });
                part.style.flexGrow = outcome.amount;
                return part;
            }),
        );
    }

    function legend(app) {
        return element(
            'div',
            { 'class': 'legend', 'role': 'group', 'aria-label': 'Outcomes' },
            amounts(app.run).map((outcome) =>
                button(
                    '',
                    () => toggleOnly(app, outcome.key),
                    {
                        'class': 'outcome',
                        'data-key': outcome.key,
                        'title': 'Only these in the list',
                    },
                    report.dom.icon(outcome.icon),
                    textOf(outcome),
                ),
            ),
        );
    }

    function helpButton() {
        const label = { 'aria-label': 'Keys and help', 'title': 'Keys and help (?)' };
        return button('', () => report.help.toggle(), { class: 'helpbutton', ...label }, '?');
    }

    function render(app, host) {
        const { run } = app;
        const wasChoosing = document.activeElement && document.activeElement.id === 'runPicker';
        const title = element('a', { href: app.addressOf(run, null) }, run.name || 'Test report');
        host.replaceChildren();
        report.dom.append(host, [
            element(
                'div',
                { class: 'headline' },
                element('h1', null, title),
                run.ended ? null : report.marks.badge('unfinished', 'unfinished'),
                element('p', { class: 'totals' }, totals(run)),
                runPicker(app),
                helpButton(),
            ),
            element('div', { class: 'outcomes' }, bar(app), legend(app)),
        ]);
        if (wasChoosing) document.getElementById('runPicker').focus();
    }

    /// What changes with the filters.
    function drawFilters(app, host) {
        host.querySelector('h1 a').href = app.addressOf(app.run, null);
        for (const one of host.querySelectorAll('.outcome')) {
            const pressed = report.criteria.showsOnlyTests(app.state, one.dataset.key);
            one.setAttribute('aria-pressed', String(pressed));
        }
    }

    /// What the tab of the browser shows.
    function setTitle(run) {
        const { failed } = run;
        document.title =
            (failed > 0 ? count(failed) + ' failed – ' : '') + (run.name || 'Test report');
        const { outcome } = run.root;
        const image = report.model.isFailed(run.root)
            ? 'failed'
            : outcome === 'empty'
              ? 'neutral'
              : 'passed';
        document.getElementById('favicon').setAttribute('href', 'image/' + image + '.svg');
    }

    report.header = { render, drawFilters, amounts, textOf, setTitle };
})((globalThis.morvexReport = globalThis.morvexReport || {}));
