// Lists of links to nodes, as the views of runs, tests and results have them.
(function (report) {
    'use strict';

    const { element, growingList } = report.dom;
    const { count, clock, duration } = report.format;
    const { outcomeIcon, extraBadges, shortTitle } = report.marks;
    const step = 50;

    function timeOf(node) {
        if (node.kind === 'entry') return clock(node.raw.time);
        return node.duration === null ? '' : duration(node.duration);
    }

    function nodeLink(app, node, title) {
        return element(
            'a',
            { class: 'testlink', href: app.addressOf(app.run, node) },
            outcomeIcon(node),
            element('span', { class: 'name' }, title),
            node.kind === 'entry' ? null : extraBadges(node),
            element('span', { class: 'time' }, timeOf(node)),
        );
    }

    /// Null for an empty list.
    function linkBlock(app, title, nodes, titleOf = shortTitle) {
        if (nodes.length === 0) return null;
        return element(
            'section',
            { class: 'block' },
            element('h2', null, title, element('span', { class: 'count' }, count(nodes.length))),
            growingList(nodes, (node) => nodeLink(app, node, titleOf(node)), step, {
                class: 'links',
            }),
        );
    }

    report.linkBlock = linkBlock;
})((globalThis.morvexReport = globalThis.morvexReport || {}));
