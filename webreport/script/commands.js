// What keys and buttons do with the page, by its operations.
(function (report) {
    'use strict';

    function stepRun(app, by) {
        const run = app.runs[app.run.index + by];
        if (run) app.showRun(run);
    }

    /// The next failure among what the filters let through.
    function goToFailure(app, by) {
        const isShown = (node) => Boolean(app.selection.shown[node.id]);
        const node = report.model.nextFailure(app.run, app.current, by, isShown);
        if (!node) {
            report.clipboard.toast('No failures here');
            return;
        }
        app.openTests.openTo(node);
        app.drawRows();
        app.open(node);
    }

    function setAllOpen(app, open) {
        app.openTests.setAll(app.run, open);
        app.drawRows();
        app.select(open ? app.current : app.current.testCase || app.run.root);
    }

    function goIn(app) {
        const { current } = app;
        if (!current.children.some((child) => app.selection.shown[child.id])) return;
        if (app.isOpen(current)) app.list.move(1);
        else app.setOpen(current, true);
    }

    function goOut(app) {
        const { current } = app;
        if (current.children.length > 0 && app.isOpen(current)) app.setOpen(current, false);
        else if (current.parent) app.select(current.parent);
    }

    /// From the details back to the list, and there clears the filters.
    function escape(app) {
        if (!app.isListShown() || app.detailHost.contains(document.activeElement))
            app.closeDetail();
        else app.clearFilters();
    }

    function linkTo(app, node) {
        return new URL(app.addressOf(app.run, node), location.href).href;
    }

    function copyFailure(app, node) {
        report.clipboard.copy(report.failureText(app.run, node, linkTo(app, node)), 'Text');
    }

    function copyAddress(app, node) {
        report.clipboard.copy(linkTo(app, node), 'Link');
    }

    report.commands = {
        stepRun,
        goToFailure,
        setAllOpen,
        goIn,
        goOut,
        escape,
        copyFailure,
        copyAddress,
    };
})((globalThis.morvexReport = globalThis.morvexReport || {}));
