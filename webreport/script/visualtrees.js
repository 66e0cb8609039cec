// The two trees of a visual verification that failed, side by side.
(function (report) {
    'use strict';

    const { element } = report.dom;

    const kinds = {
        identifying: 'another element',
        content: 'content',
        geometry: 'geometry',
        structure: 'structure',
        picture: 'picture',
    };

    const load = report.scriptBeside('morvexVisualTrees');

    function textOf({ kind, name, expected, actual }) {
        if (kind === 'structure') return kinds[kind] + ', no counterpart';
        if (kind === 'picture') return kinds[kind];
        return (
            kinds[kind] + ', ' + name + ': expected ‘' + expected + '’, actual ‘' + actual + '’'
        );
    }

    function differences(node) {
        return (node.differences || []).map((difference) =>
            element(
                'span',
                { class: 'difference difference-' + difference.kind },
                textOf(difference),
            ),
        );
    }

    function row(node) {
        const label = [
            element('span', { class: 'name' }, node.name),
            node.class && node.class !== node.name ? ' ' + node.class : null,
            differences(node),
        ];
        return element(
            'li',
            node.differences ? { class: 'differs' } : null,
            element('div', null, label),
            node.children ? element('ul', null, node.children.map(row)) : null,
        );
    }

    function tree(label, nodes) {
        return element(
            'section',
            null,
            element('h3', null, label),
            nodes.length > 0
                ? element('ul', null, nodes.map(row))
                : element('p', { class: 'note' }, 'No elements'),
        );
    }

    function hasAnotherTop(nodes) {
        return nodes.some(({ differences: found }) =>
            (found || []).some(({ kind }) => kind === 'structure' || kind === 'identifying'),
        );
    }

    function fill(node, trees) {
        if (!trees || trees.error) {
            const text = trees ? trees.error : 'The trees of this snapshot are not there.';
            node.replaceChildren(element('p', { class: 'note' }, text));
            return;
        }
        const isAnother = hasAnotherTop(trees.expected) || hasAnotherTop(trees.actual);
        node.replaceChildren(
            isAnother ? element('p', { class: 'note' }, 'There is another top element.') : '',
            element(
                'div',
                { class: 'visualtrees' },
                tree('Expected', trees.expected),
                tree('Actual', trees.actual),
            ),
        );
    }

    /// The trees that belong to the snapshot, once they are there.
    report.visualTrees = function (link) {
        const node = element('div', null, element('p', { class: 'note' }, 'Reading the trees …'));
        load(link).then((trees) => fill(node, trees));
        return node;
    };
})((globalThis.morvexReport = globalThis.morvexReport || {}));
