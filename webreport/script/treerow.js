// One row of the tree.
(function (report) {
    'use strict';

    const { element, icon } = report.dom;
    const { outcomeIcon, extraBadges, shortTitle, typeLabel } = report.marks;
    const deepestIndent = 12;

    function twisty(node, open) {
        if (node.kind === 'entry' || node.children.length === 0)
            return element('span', { class: 'twisty' });
        return element(
            'span',
            { 'class': 'twisty' + (open ? ' open' : ''), 'data-toggle': true },
            icon('chevron'),
        );
    }

    /// Sections of a behaviour-driven test say what they are; a plain section is clear as it is.
    function kindLabel(node) {
        const plain = ['overview', 'testsuite', 'testcase', 'section'];
        if (node.kind === 'entry' || node.attempt || plain.includes(node.raw.type)) return null;
        return element('span', { class: 'kind' }, typeLabel(node));
    }

    function failedWithin(node) {
        const kinds = report.outcomes.entryKinds.filter((kind) => kind.failed);
        const count = kinds.reduce((sum, kind) => sum + (node.counts[kind.key] || 0), 0);
        return count > 0
            ? element(
                  'span',
                  {
                      class: 'within',
                      title: report.format.counted(count, 'failure', 'failures') + ' within',
                  },
                  report.format.count(count),
              )
            : null;
    }

    function rowEnd(node) {
        const { clock, zoneText } = report.format;
        if (node.kind === 'entry')
            return element(
                'span',
                { class: 'time', title: zoneText(node.raw.time) },
                clock(node.raw.time),
            );
        const duration = node.duration === null ? '' : report.format.duration(node.duration);
        return [
            ...extraBadges(node),
            failedWithin(node),
            element('span', { class: 'time' }, duration),
        ];
    }

    /// A link, so that it can be opened in a tab of its own; a plain click is the list's.
    function nameLink(node, address) {
        const title = shortTitle(node);
        return element('a', { class: 'name', href: address, tabindex: '-1', title }, title);
    }

    /// `open` is meaningless for a node without children. `siblings` is `{place, count}` among
    /// those listed; null when that is not known.
    function buildRow(node, open, address, siblings) {
        const hasChildren = node.kind !== 'entry' && node.children.length > 0;
        const row = element(
            'div',
            {
                'class': 'row kind-' + node.kind + ' is-' + (node.entryKind || node.outcome),
                'role': 'treeitem',
                'id': 'row-' + node.id,
                'data-id': node.id,
                'data-depth': node.depth,
                'aria-level': node.depth + 1,
                'aria-expanded': hasChildren ? String(Boolean(open)) : null,
                'aria-posinset': siblings && siblings.place,
                'aria-setsize': siblings && siblings.count,
            },
            twisty(node, open),
            outcomeIcon(node),
            kindLabel(node),
            nameLink(node, address),
            rowEnd(node),
        );
        row.style.setProperty('--depth', Math.min(node.depth, deepestIndent));
        return row;
    }

    report.treeRow = { buildRow };
})((globalThis.morvexReport = globalThis.morvexReport || {}));
