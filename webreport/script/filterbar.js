// Search field, filters and order above the list.
(function (report) {
    'use strict';

    const { element, button, icon } = report.dom;
    const { count } = report.format;
    const { testFilters, entryKinds } = report.outcomes;
    const { setMode, showsFailuresOnly } = report.criteria;
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
        const text = (mode ? mode + ' ' : '') + (row.plural || row.label);
        return button(
            '',
            (event) =>
                app.changeFilters(() =>
                    setMode(
                        modes,
                        row.key,
                        event.shiftKey && mode !== 'not' ? 'not' : following.get(mode),
                    ),
                ),
            {
                'class': 'chip tone-' + row.icon + (mode ? ' ' + mode : ''),
                'data-key': row.key,
                'aria-label': text + ' ' + count(amount) + ', ' + stateTexts.get(mode),
                'title':
                    'Click: only these, then hide these, then no filter. With Shift: hide these.',
            },
            icon(row.icon),
            element('span', { class: 'label' }, text),
            ' ',
            element('span', { class: 'count' }, count(amount)),
        );
    }

    function chips(app, label, modes, rows, amounts) {
        const used = rows.filter((row) => amounts[row.key] || modes.has(row.key));
        if (used.length === 0) return null;
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
            'oninput': () => app.changeFilters((state) => (state.text = field.value)),
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
        return button('Slowest first', () => app.toggleSlowest(), {
            id: 'slowest',
            class: 'toggle',
        });
    }

    /// Where there is little room the chips are folded away.
    function foldButton(groups) {
        const fold = button('Filters', () => setFolded(groups.classList.contains('open')), {
            'id': 'fold',
            'class': 'toggle',
            'aria-expanded': 'false',
        });
        function setFolded(folded) {
            groups.classList.toggle('open', !folded);
            fold.setAttribute('aria-expanded', String(!folded));
        }
        return fold;
    }

    /// Returns a function that draws the filters again; the search field stays, with its caret.
    function create(app, host) {
        const field = searchField(app);
        const failures = failuresButton(app);
        const order = orderButton(app);
        const clear = button('Clear filters', () => app.clearFilters(), {
            id: 'clear',
            class: 'toggle',
            title: 'Esc',
        });
        const groups = element('div', { class: 'chipgroups' });
        const fold = foldButton(groups);
        host.replaceChildren(
            element('div', { class: 'searchrow' }, field, failures, order, fold, clear),
            groups,
        );
        return function draw() {
            const { state, run } = app;
            const input = field.querySelector('input');
            if (input.value !== state.text) input.value = state.text;
            const chosen = state.tests.size + state.entries.size;
            fold.textContent = 'Filters' + (chosen > 0 ? ' (' + chosen + ')' : '');
            failures.setAttribute('aria-pressed', String(showsFailuresOnly(state)));
            order.setAttribute('aria-pressed', String(state.slowest));
            clear.hidden = !report.filter.isActive(state);
            const focused =
                document.activeElement && document.activeElement.dataset
                    ? document.activeElement.dataset.key
                    : null;
            groups.replaceChildren();
            report.dom.append(groups, [
                chips(app, 'Test cases', state.tests, testFilters, testAmounts(run)),
                chips(app, 'Results', state.entries, entryKinds, run.root.counts),
            ]);
            const again = focused && groups.querySelector('[data-key="' + focused + '"]');
            if (again) again.focus();
        };
    }

    report.filterBar = { create };
})((globalThis.morvexReport = globalThis.morvexReport || {}));
