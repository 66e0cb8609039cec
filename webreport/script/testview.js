// What is shown of a test case, a section or an attempt.
(function (report) {
    'use strict';

    const { element, growingList } = report.dom;
    const { count } = report.format;
    const { outcomeIcon, shortTitle, nodeTitle } = report.marks;

    function nodeLink(app, node, title) {
        return element('a', { class: 'testlink', href: app.addressOf(app.run, node) }, outcomeIcon(node),
            element('span', { class: 'name' }, title || shortTitle(node)),
            element('span', { class: 'time' }, node.kind === 'entry' ? report.format.clock(node.raw.time)
                : node.duration === null ? '' : report.format.duration(node.duration)));
    }

    function linkBlock(app, title, nodes, titleOf) {
        if (nodes.length === 0)
            return null;
        return element('section', { class: 'block' }, element('h2', null, title, ' ', element('span', { class: 'count' }, count(nodes.length))),
            growingList(nodes, (node) => nodeLink(app, node, titleOf && titleOf(node)), 50, { class: 'links' }));
    }

    function attemptTitle(node) {
        return nodeTitle(node) + ': ' + report.marks.outcomeOf(node).label.toLowerCase();
    }

    function within(run, node, wanted) {
        return run.nodes.slice(node.id + 1, node.end + 1).filter((one) => one.kind === 'entry' && wanted(one));
    }

    function flakyNotice(node) {
        return node.outcome !== 'flaky' || node.kind !== 'attempts' ? null : element('p', { class: 'notice' },
            'Flaky: failed at first and passed when it was tried again. Only the last attempt counts.');
    }

    function unfinishedNotice(node) {
        return !node.unfinished ? null : element('p', { class: 'notice' }, 'This was still running when the report broke off.');
    }

    function textBlocks(raw) {
        return [raw.summary ? element('p', { class: 'summary' }, raw.summary) : null,
            raw.description ? report.textBlock(raw.description, 'description') : null];
    }

    function testView(app, node) {
        const attempts = node.kind === 'attempts' ? node.children : [];
        const isPlainTest = node.kind === 'attempts' || !node.attempt;
        return [
            flakyNotice(node), unfinishedNotice(node), textBlocks(node.raw),
            linkBlock(app, 'Attempts', attempts, attemptTitle),
            linkBlock(app, 'Failures', within(app.run, node, report.model.isFailed)),
            linkBlock(app, 'Attachments', within(app.run, node, (one) => one.entryKind === 'attachment')),
            isPlainTest ? report.historyView(app, node) : null,
        ];
    }

    report.testView = { testView, nodeLink, linkBlock };
})(globalThis.morvexReport = globalThis.morvexReport || {});
