// What is shown of a test case, a section or an attempt.
(function (report) {
    'use strict';

    const { element } = report.dom;
    const { nodeTitle } = report.marks;

    function attemptTitle(node) {
        return nodeTitle(node) + ': ' + report.marks.outcomeOf(node).label.toLowerCase();
    }

    function within(run, node, wanted) {
        return run.nodes
            .slice(node.id + 1, node.end + 1)
            .filter((one) => one.kind === 'entry' && wanted(one));
    }

    function flakyNotice(node) {
        if (node.outcome !== 'flaky' || node.kind !== 'attempts') return null;
        const text =
            'Flaky: failed at first and passed when it was tried again. ' +
            'Only the last attempt counts.';
        return element('p', { class: 'notice' }, text);
    }

    function unfinishedNotice(node) {
        if (!node.unfinished) return null;
        const text = 'This was still running when the report broke off.';
        return element('p', { class: 'notice' }, text);
    }

    function testView(app, node) {
        const attempts = node.kind === 'attempts' ? node.children : [];
        const isPlainTest = node.kind === 'attempts' || !node.attempt;
        return [
            flakyNotice(node),
            unfinishedNotice(node),
            report.describe(node.raw),
            report.linkBlock(app, 'Attempts', attempts, attemptTitle),
            report.linkBlock(app, 'Failures', within(app.run, node, report.model.isFailed)),
            report.linkBlock(
                app,
                'Attachments',
                within(app.run, node, (one) => one.entryKind === 'attachment'),
            ),
            isPlainTest ? report.historyView(app, node) : null,
        ];
    }

    report.testView = testView;
})((globalThis.morvexReport = globalThis.morvexReport || {}));
