// One row of the tree.
(function (report) {
    'use strict';

    const { element, icon } = report.dom;
    const { outcomeIcon, extraBadges, shortTitle, typeLabel } = report.marks;

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
        const plain = ['testsuite', 'testcase', 'section'];
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
        if (node.kind === 'entry')
            return element('span', { class: 'time' }, report.format.clock(node.raw.time));
        const duration = node.duration === null ? '' : report.format.duration(node.duration);
        return [
            ...extraBadges(node),
            failedWithin(node),
            element('span', { class: 'time' }, duration),
        ];
    }

    function siblingPlace(node) {
        return node.parent
            ? { 'aria-posinset': node.place + 1, 'aria-setsize': node.parent.children.length }
            : {};
    }

    /// `open` is meaningless for a node without children.
    function buildRow(node, open) {
        const hasChildren = node.kind !== 'entry' && node.children.length > 0;
        return element(
            'div',
            {
                'class': 'row kind-' + node.kind + ' is-' + (node.entryKind || node.outcome),
                'role': 'treeitem',
                'id': 'row-' + node.id,
                'data-id': node.id,
                'data-depth': Math.min(node.depth, 12),
                'aria-level': node.depth + 1,
                'aria-expanded': hasChildren ? String(Boolean(open)) : null,
                ...siblingPlace(node),
            },
            twisty(node, open),
            outcomeIcon(node),
            kindLabel(node),
            element('span', { class: 'name' }, shortTitle(node)),
            rowEnd(node),
        );
    }

    report.treeRow = { buildRow };
})((globalThis.morvexReport = globalThis.morvexReport || {}));
