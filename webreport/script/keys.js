// Which element a key is meant for.
(function (report) {
    'use strict';

    const listKeys = new Set([
        'ArrowDown',
        'ArrowUp',
        'ArrowLeft',
        'ArrowRight',
        'PageDown',
        'PageUp',
        'Home',
        'End',
        'Enter',
    ]);

    function isWriting(target) {
        return target.matches('input[type="search"], textarea, select');
    }

    /// In the search field arrow and Enter go on to the list; Escape clears the filters, or
    /// leaves the field when there are none; all else is text.
    function handleInSearch(app, event) {
        if (event.key === 'Escape' && report.filter.isActive(app.state)) app.clearFilters();
        else if (event.key === 'Escape' || event.key === 'Enter' || event.key === 'ArrowDown')
            app.focusList();
        else return;
        event.preventDefault();
    }

    /// Keys that scroll or press buttons keep that meaning outside of the list, and where it is
    /// not to be seen.
    function isForPage(app, event) {
        const isForList =
            event.target === document.body ? app.isListShown() : event.target.closest('#tree');
        return listKeys.has(event.key) && !isForList;
    }

    function handle(app, event) {
        if (event.ctrlKey || event.metaKey || event.altKey || event.defaultPrevented) return;
        if (report.help.isOpen()) {
            if (event.key === '?') report.help.toggle();
            return;
        }
        if (event.target.id === 'search') {
            handleInSearch(app, event);
            return;
        }
        const action =
            isWriting(event.target) || isForPage(app, event)
                ? null
                : report.help.actionFor(event.key);
        if (action) {
            event.preventDefault();
            action(app);
        }
    }

    report.keys = {
        install: (app) => document.addEventListener('keydown', (event) => handle(app, event)),
    };
})((globalThis.morvexReport = globalThis.morvexReport || {}));
