// Lists of links to nodes, as the views of runs, tests and results have them.
(function (report) {
    'use strict';

    const { element } = report.dom;
    const { count, clock, duration } = report.format;
    const { outcomeIcon, extraBadges, shortTitle } = report.marks;
    const mostAtFirst = 50;
    const longestReason = 120;

    function timeOf(node) {
        if (node.kind === 'entry') return clock(node.raw.time);
        return node.duration === null ? '' : duration(node.duration);
    }

    function oneLine(text) {
        const line = text
            .slice(0, 4 * longestReason)
            .replace(/\s+/g, ' ')
            .trim();
        return line.length > longestReason ? line.slice(0, longestReason).trimEnd() + ' …' : line;
    }

    function valuesText(raw) {
        const values = report.values.comparedValues(raw);
        if (!values) return '';
        const quoted = (value) => '“' + oneLine(value.slice(0, longestReason)).slice(0, 50) + '”';
        return 'expected ' + quoted(values.expected) + ', got ' + quoted(values.actual);
    }

    /// What an entry says beside its title.
    function reasonOfEntry({ raw, entryKind }) {
        const detail = report.values.splitStack(raw.detail || '').text;
        const said = detail === raw.text ? '' : report.marks.withoutMachinePaths(detail);
        const reason = oneLine(valuesText(raw) || said);
        if (entryKind !== 'xpass') return reason;
        return 'Passed, but was expected to fail' + (reason ? ': ' + reason : '');
    }

    /// What failed first in a test.
    function reasonOfTest(run, node) {
        const first = report.causes.firstFailure(run, node);
        if (!first) return '';
        const title = shortTitle(first, longestReason);
        const reason = reasonOfEntry(first);
        return oneLine(
            reason && !reason.startsWith(title) ? title + ': ' + reason : reason || title,
        );
    }

    /// For lists of failures: what failed.
    function reasonOf(app, node) {
        return node.kind === 'entry' ? reasonOfEntry(node) : reasonOfTest(app.run, node);
    }

    function nodeLink(app, node, title, reason) {
        return element(
            'a',
            { class: 'testlink', href: app.addressOf(app.run, node) },
            outcomeIcon(node),
            element(
                'span',
                { class: 'what' },
                element('span', { class: 'name', title }, title),
                reason ? element('span', { class: 'reason' }, reason) : null,
            ),
            node.kind === 'entry' ? null : extraBadges(node),
            element('span', { class: 'time' }, timeOf(node)),
        );
    }

    /// Null for an empty list. `titleOf` and `reasonOf` give the two lines of a link; `step` is how
    /// many are shown at first.
    function linkBlock(app, title, nodes, options = {}) {
        if (nodes.length === 0) return null;
        const { titleOf = shortTitle, reasonOf = () => '', step = mostAtFirst } = options;
        return element(
            'section',
            { class: 'block' },
            element('h2', null, title, element('span', { class: 'count' }, count(nodes.length))),
            report.growingList(
                nodes,
                (node) => nodeLink(app, node, titleOf(node), reasonOf(node)),
                step,
                { class: 'links' },
            ),
        );
    }

    function failureBlock(app, title, nodes, step) {
        return linkBlock(app, title, nodes, { step, reasonOf: (node) => reasonOf(app, node) });
    }

    report.nodeLink = (app, node) => nodeLink(app, node, shortTitle(node), '');
    report.reasonOf = reasonOfEntry;
    report.linkBlock = linkBlock;
    report.failureBlock = failureBlock;
})((globalThis.morvexReport = globalThis.morvexReport || {}));
