// What is to be said about the list as a whole: how much of it the filters show.
(function (report) {
    'use strict';

    const { element, button } = report.dom;
    const { count, counted } = report.format;

    function amounts(app) {
        const { run, selection } = app;
        const shown = run.testCases.filter((one) => selection.shown[one.id]).length;
        const hits = selection.hits > 0 ? ' · ' + counted(selection.hits, 'hit', 'hits') : '';
        return (
            count(shown) + ' of ' + counted(run.testCases.length, 'test case', 'test cases') + hits
        );
    }

    function clearButton(app, label) {
        const clear = () => {
            app.clearFilters();
            app.focusView();
        };
        return button(label, clear, { class: 'toggle' });
    }

    /// The root alone is always shown.
    function draw(app) {
        const active = report.filter.isActive(app.state);
        const isEmpty = active && app.selection.count[app.run.root.id] === 0;
        const host = document.getElementById('listEmpty');
        host.hidden = !isEmpty;
        host.replaceChildren();
        if (isEmpty)
            report.dom.append(host, [
                element('p', null, 'Nothing matches the filters.'),
                clearButton(app, 'Clear filters'),
            ]);
        document.getElementById('listNote').textContent = active && !isEmpty ? amounts(app) : '';
        drawHidden(app);
    }

    function drawHidden(app) {
        const host = document.getElementById('hiddenNote');
        host.hidden = Boolean(app.selection.shown[app.current.id]);
        host.replaceChildren();
        if (!host.hidden)
            report.dom.append(host, [
                element('span', null, 'Hidden in the list by the filters.'),
                clearButton(app, 'Clear filters'),
            ]);
    }

    report.listNotes = { draw, drawHidden };
})((globalThis.morvexReport = globalThis.morvexReport || {}));
