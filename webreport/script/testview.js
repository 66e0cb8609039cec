// What is shown of a test case, a section or an attempt.
(function (report) {
    'use strict';

    const { element } = report.dom;
    const { nodeTitle } = report.marks;
    const { entriesWithin, isFailed } = report.model;
    const lastShown = 8;

    function attemptTitle(node) {
        return nodeTitle(node) + ': ' + report.marks.outcomeOf(node).label.toLowerCase();
    }

    function notice(text) {
        return element('p', { class: 'notice' }, text);
    }

    function flakyNotice(node) {
        if (node.outcome !== 'flaky' || node.kind !== 'attempts') return null;
        return notice(
            'Flaky: failed at first and passed when it was tried again. ' +
                'Only the last attempt counts.',
        );
    }

    function unfinishedNotice(node) {
        return node.unfinished ? notice('This was still running when the report broke off.') : null;
    }

    function depthNotice(node) {
        if (!node.tooDeep) return null;
        return notice(
            'Nested deeper than the list can show: it is beside the section it is in, and ' +
                'what is in it after it. Does the script end its sections?',
        );
    }

    /// What the author of a test wrote about it.
    function describe(raw) {
        return [
            raw.summary ? element('p', { class: 'summary' }, raw.summary) : null,
            raw.description ? report.textBlock(raw.description, 'description') : null,
        ];
    }

    /// What happened last where the report breaks off.
    function lastEntries(app, node) {
        if (!node.unfinished) return null;
        const entries = entriesWithin(app.run, node, () => true);
        return report.linkBlock(app, 'Last entries', entries.slice(-lastShown));
    }

    /// The first failure of the last attempt in full, below what led to it, so that nobody has to
    /// go on to it.
    function failures(app, node) {
        const attempt = report.why.failedAttempt(node);
        const failed = entriesWithin(app.run, attempt, isFailed);
        if (failed.length === 0) return null;
        const title = attempt === node ? 'Failures' : 'Failures of the last attempt that failed';
        const crash = failed.slice(1).find(report.why.isCrash);
        return [
            report.entryView.before(app, failed[0]),
            crash ? report.entryView.before(app, crash) : null,
            report.failureBlock(app, title, failed),
            report.detail.entryBody(app, failed[0]),
        ];
    }

    function testView(app, node) {
        const attempts = node.kind === 'attempts' ? node.children : [];
        const isPlainTest = !node.attempt && !node.tooDeep;
        const isAttachment = (one) => one.entryKind === 'attachment';
        return [
            flakyNotice(node),
            unfinishedNotice(node),
            depthNotice(node),
            describe(node.raw),
            failures(app, node),
            report.linkBlock(app, 'Attempts', attempts, { titleOf: attemptTitle }),
            lastEntries(app, node),
            report.linkBlock(app, 'Attachments', entriesWithin(app.run, node, isAttachment)),
            isPlainTest ? report.historyView(app, node) : null,
        ];
    }

    report.testView = testView;
    report.describe = describe;
})((globalThis.morvexReport = globalThis.morvexReport || {}));
