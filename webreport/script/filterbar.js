// Search field, filters and order above the list.
(function (report) {
    'use strict';

    const { element, button, icon } = report.dom;
    const { count } = report.format;
    const stateTexts = new Map([
        [undefined, 'shown'],
        ['only', 'only these'],
        ['not', 'hidden'],
    ]);
    const following = new Map([
        [undefined, 'only'],
        ['only', 'not'],
        ['not', undefined],
    ]);

    function chip(app, modes, row, amount) {
        const mode = modes.get(row.key);
        return button(
            '',
            (event) =>
                app.setMode(
                    modes,
                    row.key,
                    event.shiftKey && mode !== 'not' ? 'not' : following.get(mode),
                ),
            {
                'class': 'chip tone-' + row.icon + (mode ? ' ' + mode : ''),
                'data-key': row.key,
                'aria-label':
                    (row.plural || row.label) + ', ' + amount + ', ' + stateTexts.get(mode),
                'title':
                    'Click: only these, then hide these, then no filter. With Shift: hide these.',
            },
            icon(row.icon),
            element('span', { class: 'label' }, mode ? mode + ' ' : null, row.plural || row.label),
            element('span', { class: 'count' }, count(amount)),
        );
    }

    function chips(app, label, modes, rows, amounts) {
        const used = rows.filter((row) => amounts[row.key] || modes.has(row.key));
        return element(
            'div',
            { 'class': 'chips', 'role': 'group', 'aria-label': label },
            element('span', { class: 'chipslabel' }, label),
            element(
                'span',
                { class: 'chiprow' },
                used.map((row) => chip(app, modes, row, amounts[row.key] || 0)),
            ),
        );
    }

    function testAmounts(run) {
        const amounts = {};
        for (const testCase of run.testCases) {
            for (const mark of report.filter.marksOf(testCase))
                amounts[mark] = (amounts[mark] || 0) + 1;
        }
        return amounts;
    }

    function searchField(app) {
        const field = element('input', {
            'type': 'search',
            'id': 'search',
            'placeholder': 'Search names, texts, locations',
            'aria-label': 'Search',
            'aria-keyshortcuts': '/',
            'autocomplete': 'off',
            'spellcheck': 'false',
            'title': 'All words must occur; "two words" as a phrase; -word must not occur',
            'oninput': () => app.setText(field.value),
        });
        return element('div', { class: 'searchbox' }, icon('search'), field);
    }

    function failuresButton(app) {
        return button('Failures only', () => app.toggleFailures(), {
            id: 'failures',
            class: 'toggle',
        });
    }

    function orderButton(app) {
        return button('Slowest first', () => app.setSlowest(!app.state.slowest), {
            id: 'slowest',
            class: 'toggle',
        });
    }

    /// Returns a function that draws the filters again; the search field stays, with its caret.
    function create(app, host) {
        const field = searchField(app);
        const failures = failuresButton(app);
        const order = orderButton(app);
        const clear = button('Clear', () => app.clearFilters(), {
            id: 'clear',
            class: 'toggle',
            title: 'Take all filters away (Esc)',
        });
        const groups = element('div', { class: 'chipgroups' });
        host.replaceChildren(
            element('div', { class: 'searchrow' }, field, failures, order, clear),
            groups,
        );
        return function draw() {
            const { state, run } = app;
            const input = field.querySelector('input');
            if (input.value !== state.text) input.value = state.text;
            failures.setAttribute('aria-pressed', String(app.showsFailuresOnly()));
            order.setAttribute('aria-pressed', String(state.slowest));
            clear.hidden = !report.filter.isActive(state);
            const focused =
                document.activeElement && document.activeElement.dataset
                    ? document.activeElement.dataset.key
                    : null;
            groups.replaceChildren(
                chips(
                    app,
                    'Test cases',
                    state.tests,
                    report.outcomes.testFilters,
                    testAmounts(run),
                ),
                chips(app, 'Results', state.entries, report.outcomes.entryKinds, run.root.counts),
            );
            const again = focused && groups.querySelector('[data-key="' + focused + '"]');
            if (again) again.focus();
        };
    }

    report.filterBar = { create };
})((globalThis.morvexReport = globalThis.morvexReport || {}));
