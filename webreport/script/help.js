// The keys: one table for what they do and for the page that describes them.
(function (report) {
    'use strict';

    const { element, button } = report.dom;
    const { commands } = report;

    /// `keys` are values of KeyboardEvent.key; `run` gets the page.
    const table = [
        {
            title: 'Move',
            rows: [
                {
                    keys: ['ArrowDown', 'j'],
                    shown: ['↓', 'j'],
                    text: 'next row',
                    run: (app) => app.list.move(1),
                },
                {
                    keys: ['ArrowUp', 'k'],
                    shown: ['↑', 'k'],
                    text: 'previous row',
                    run: (app) => app.list.move(-1),
                },
                {
                    keys: ['ArrowRight'],
                    shown: ['→'],
                    text: 'open, or go in',
                    run: (app) => commands.goIn(app),
                },
                {
                    keys: ['ArrowLeft'],
                    shown: ['←'],
                    text: 'close, or go out',
                    run: (app) => commands.goOut(app),
                },
                {
                    keys: ['PageDown'],
                    shown: ['Page ↓'],
                    text: 'a page down',
                    run: (app) => app.list.move(app.list.pageSize()),
                },
                {
                    keys: ['PageUp'],
                    shown: ['Page ↑'],
                    text: 'a page up',
                    run: (app) => app.list.move(-app.list.pageSize()),
                },
                {
                    keys: ['Home'],
                    shown: ['Home'],
                    text: 'first row',
                    run: (app) => app.list.move(-Infinity),
                },
                {
                    keys: ['End'],
                    shown: ['End'],
                    text: 'last row',
                    run: (app) => app.list.move(app.list.rows.length),
                },
                {
                    keys: ['Enter'],
                    shown: ['Enter'],
                    text: 'to the details',
                    run: (app) => app.openDetail(),
                },
                { keys: ['n'], text: 'next failure', run: (app) => commands.goToFailure(app, 1) },
                {
                    keys: ['p'],
                    text: 'previous failure',
                    run: (app) => commands.goToFailure(app, -1),
                },
                {
                    keys: ['t'],
                    text: 'next failing test case',
                    run: (app) => commands.goToTestCase(app, 1),
                },
                {
                    keys: ['T'],
                    text: 'previous failing test case',
                    run: (app) => commands.goToTestCase(app, -1),
                },
                { keys: ['g'], text: 'next cause', run: (app) => commands.goToCause(app, 1) },
                { keys: ['G'], text: 'previous cause', run: (app) => commands.goToCause(app, -1) },
                {
                    keys: ['o'],
                    text: 'overview of the run',
                    run: (app) => app.open(app.run.root),
                },
                { keys: ['a'], text: 'latest run of each suite', run: (app) => app.showLatest() },
                {
                    keys: ['['],
                    text: 'run before, of the same suite',
                    run: (app) => commands.stepRun(app, -1),
                },
                {
                    keys: [']'],
                    text: 'run after, of the same suite',
                    run: (app) => commands.stepRun(app, 1),
                },
            ],
        },
        {
            title: 'Show',
            rows: [
                {
                    keys: ['/'],
                    text: 'search',
                    run: () => document.getElementById('search').focus(),
                },
                { keys: ['f'], text: 'failures only', run: (app) => app.toggleFailures() },
                {
                    keys: ['s'],
                    text: 'slowest first',
                    run: (app) => app.toggleSlowest(),
                },
                { keys: ['e'], text: 'open all', run: (app) => commands.setAllOpen(app, true) },
                { keys: ['E'], text: 'close all', run: (app) => commands.setAllOpen(app, false) },
                {
                    keys: ['Escape'],
                    shown: ['Esc'],
                    text: 'clear filters, go back to the list',
                    run: (app) => commands.escape(app),
                },
            ],
        },
        {
            title: 'Share',
            rows: [
                {
                    keys: ['c'],
                    text: 'copy the failure as text',
                    run: (app) => commands.copyFailure(app, app.current),
                },
                {
                    keys: ['r'],
                    text: 'copy the command that runs the failed test cases again',
                    run: (app) => commands.copyRerun(app, app.current),
                },
                {
                    keys: ['l'],
                    text: 'copy the address of this place',
                    run: (app) => commands.copyAddress(app, app.current),
                },
                { keys: ['?'], text: 'this help', run: () => toggle() },
            ],
        },
    ];

    let dialog = null;

    function keyRow(row) {
        const shown = row.shown || row.keys;
        return element(
            'tr',
            null,
            element(
                'th',
                { scope: 'row' },
                shown.map((key) => element('kbd', null, key)),
            ),
            element('td', null, row.text),
        );
    }

    const noteTexts = [
        'Filters: click once for only these, twice to hide these, three times for no filter. ' +
            'Place and filters are in the address: what you see is what a colleague sees.',
        'Search: all words must occur, in the result or a test round it; "two words" as a ' +
            'phrase; -word must not occur. Values, cells of tables, locations and outcomes count.',
        'Newly failing: fails now and did not in the latest earlier run that ran it; fixed: the ' +
            'other way round. Flaky: failed at first and passed when tried again, or changed ' +
            'between failed and passed more than once in the last ten runs.',
    ];

    function notes() {
        const texts = noteTexts.map((text) => element('p', null, text));
        return element('div', { class: 'helpnotes' }, texts);
    }

    function build() {
        dialog = element(
            'dialog',
            { 'class': 'help', 'aria-label': 'Keys and help' },
            element(
                'div',
                { class: 'helphead' },
                element('h1', null, 'Keys'),
                button('Close', () => dialog.close(), { class: 'toggle' }),
            ),
            element(
                'div',
                { class: 'keytables' },
                table.map((group) =>
                    element(
                        'section',
                        null,
                        element('h2', null, group.title),
                        element('table', null, element('tbody', null, group.rows.map(keyRow))),
                    ),
                ),
            ),
            notes(),
        );
        dialog.addEventListener('click', (event) => {
            if (event.target === dialog) dialog.close();
        });
        document.body.append(dialog);
    }

    function toggle() {
        if (!dialog) build();
        if (dialog.open) dialog.close();
        else dialog.showModal();
    }

    function actionFor(key) {
        for (const group of table) {
            const row = group.rows.find((one) => one.keys.includes(key));
            if (row) return row.run;
        }
        return null;
    }

    report.help = { toggle, actionFor, isOpen: () => Boolean(dialog && dialog.open) };
})((globalThis.morvexReport = globalThis.morvexReport || {}));
