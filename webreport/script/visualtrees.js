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

    const patterns = { 'wildcard': 'like ', 'regular expression': 'matching ' };

    function quoted(value) {
        return value === null ? 'none' : '‘' + value + '’';
    }

    function textOf({ kind, name, expected, actual, pattern }) {
        const what = [kinds[kind], name].filter(Boolean).join(', ');
        if (expected === undefined) return what;
        const wanted = (patterns[pattern] || '') + quoted(expected);
        return what + ': expected ' + wanted + ', actual ' + quoted(actual);
    }

    // Servers forbid pages pictures from elsewhere than files: no address holds one.
    async function draw(canvas, base64) {
        const png = Uint8Array.from(atob(base64), (one) => one.charCodeAt(0));
        const bitmap = await createImageBitmap(new Blob([png]));
        canvas.width = bitmap.width;
        canvas.height = bitmap.height;
        canvas.getContext('2d').drawImage(bitmap, 0, 0);
    }

    function picture(label, base64) {
        const caption = element('figcaption', null, label + (base64 ? '' : ': none'));
        if (!base64) return element('figure', null, caption);
        const canvas = element('canvas', { 'role': 'img', 'aria-label': label + ' picture' });
        draw(canvas, base64).catch(() => canvas.replaceWith('The picture can’t be read.'));
        return element('figure', null, caption, canvas);
    }

    function picturesOf({ expectedPicture, actualPicture }, pictures) {
        const isShown = [expectedPicture, actualPicture].some((one) => one in pictures);
        return isShown
            ? element(
                  'div',
                  { class: 'cutouts' },
                  picture('Expected', pictures[expectedPicture]),
                  picture('Actual', pictures[actualPicture]),
              )
            : null;
    }

    function differences(node, pictures) {
        return (node.differences || []).map((difference) =>
            element(
                'div',
                { class: 'difference difference-' + difference.kind },
                textOf(difference),
                picturesOf(difference, pictures),
            ),
        );
    }

    function row(node, pictures) {
        const label = [
            element('span', { class: 'name' }, node.name),
            node.class && node.class !== node.name ? ' ' + node.class : null,
            differences(node, pictures),
        ];
        return element(
            'li',
            node.differences ? { class: 'differs' } : null,
            element('div', null, label),
            node.children ? rows(node.children, pictures) : null,
        );
    }

    function rows(nodes, pictures) {
        return element(
            'ul',
            null,
            nodes.map((node) => row(node, pictures)),
        );
    }

    function tree(label, nodes, pictures) {
        return element(
            'section',
            null,
            element('h3', null, label),
            nodes.length > 0
                ? rows(nodes, pictures)
                : element('p', { class: 'note' }, 'No elements'),
        );
    }

    function isUnmatched(kind, name) {
        return kind === 'structure' && (name === 'missing' || name === 'additional');
    }

    function hasAnotherTop(nodes) {
        return nodes.some(({ differences: found }) =>
            (found || []).some(
                ({ kind, name }) => kind === 'identifying' || isUnmatched(kind, name),
            ),
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
                tree('Expected', trees.expected, trees.pictures || []),
                tree('Actual', trees.actual, trees.pictures || []),
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
