// What keys and buttons do with the page, by its operations.
(function (report) {
    'use strict';

    /// Within the suite that is looked at.
    function stepRun(app, by) {
        const part = report.shown.partOf(app.run, app.current);
        if (!part) {
            report.clipboard.toast('Choose a suite first');
            return;
        }
        const run = report.suites.neighbour(part.source, by);
        if (run) app.showRun(run);
        else report.clipboard.toast(by < 0 ? 'No earlier run' : 'No later run');
    }

    /// The next failure among what the filters let through.
    function goToFailure(app, by) {
        goTo(
            app,
            report.model.nextFailure(app.run, app.current, by, (node) => isShown(app, node)),
        );
    }

    function isShown(app, node) {
        return Boolean(app.selection.shown[node.id]);
    }

    function goTo(app, node) {
        if (!node) {
            report.clipboard.toast('No failures here');
            return;
        }
        app.openTests.openTo(node);
        app.drawRows();
        app.open(node);
    }

    /// `groups` of failed test cases; those that no filter hides count.
    function goToGroup(app, groups, by) {
        const shown = groups
            .map((group) => group.filter((node) => isShown(app, node)))
            .filter((group) => group.length > 0);
        goTo(app, report.why.nextGroup(shown, app.current.testCase, by));
    }

    function goToTestCase(app, by) {
        const { failed } = report.summary.of(app.run, app.run.root);
        const groups = failed.map((node) => [node]);
        goToGroup(app, groups, by);
    }

    function goToCause(app, by) {
        const { causes } = report.summary.of(app.run, app.run.root);
        const groups = causes.map((cause) => cause.testCases);
        goToGroup(app, groups, by);
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
        return new URL(app.lastingAddressOf(node), location.href).href;
    }

    function copyFailure(app, node) {
        report.clipboard.copy(report.failureText(app.run, node, linkTo(app, node)), 'Text');
    }

    function copyRerun(app, node) {
        const text = report.rerunCommand(app.run, node);
        if (text) report.clipboard.copy(text, 'Command');
        else report.clipboard.toast('No failed test case here');
    }

    function copyAddress(app, node) {
        report.clipboard.copy(linkTo(app, node), 'Link');
    }

    report.commands = {
        stepRun,
        goToFailure,
        goToTestCase,
        goToCause,
        setAllOpen,
        goIn,
        goOut,
        escape,
        copyFailure,
        copyRerun,
        copyAddress,
    };
})((globalThis.morvexReport = globalThis.morvexReport || {}));
