// The two pictures of a screenshot comparison, each with its size.
(function (report) {
    'use strict';

    const { element } = report.dom;
    const { count, locationLink, locationText } = report.format;

    /// A verification keeps its pictures under one number; null for a picture of another name.
    function beside(uri, name) {
        const match = /^(.*\/)?failed_(\d+)\.png$/.exec(uri);
        return match ? (match[1] || '') + name + '_' + match[2] + '.png' : null;
    }

    function urisOf(uri) {
        return {
            actual: uri,
            expected: beside(uri, 'expected'),
            difference: beside(uri, 'difference'),
        };
    }

    function sizeOf({ naturalWidth, naturalHeight }) {
        return count(naturalWidth) + ' × ' + count(naturalHeight);
    }

    function loaded(image) {
        return new Promise((resolve) => {
            image.addEventListener('load', () => resolve(true));
            image.addEventListener('error', () => resolve(false));
        });
    }

    /// `{node, image, size, isThere}` for one of the two pictures; `isThere` is a promise.
    function figure(label, className, uri) {
        const link = locationLink(uri);
        const image = element('img', { alt: label + ' picture', src: link });
        const size = element('span', { class: 'size' });
        const newTab = { href: link, target: '_blank', rel: 'noopener' };
        const node = element(
            'figure',
            { class: className },
            element('figcaption', null, element('a', newTab, label), ' ', size),
            element('a', { class: 'picture', tabindex: '-1', ...newTab }, image),
        );
        image.addEventListener('load', () => (size.textContent = sizeOf(image)));
        return { node, image, size, isThere: loaded(image) };
    }

    function missing(label, uri) {
        return element(
            'figure',
            null,
            element('figcaption', null, label),
            element('p', { class: 'note' }, 'The picture ' + locationText(uri) + ' is not there.'),
        );
    }

    function figuresOf(uris) {
        return {
            expected: uris.expected && figure('Expected', 'expected', uris.expected),
            actual: figure('Actual', 'actual', uris.actual),
            difference: uris.difference && figure('Marked', 'marked', uris.difference),
        };
    }

    function sizesDiffer({ image: a }, { image: b }) {
        return a.naturalWidth !== b.naturalWidth || a.naturalHeight !== b.naturalHeight;
    }

    /// Marks sizes that differ, and returns what is to be said of them, or null.
    function sizeNote(expected, actual) {
        if (!sizesDiffer(expected, actual)) return null;
        expected.size.classList.add('differs');
        actual.size.classList.add('differs');
        const text =
            'The pictures differ in size: expected ' +
            sizeOf(expected.image) +
            ', actual ' +
            sizeOf(actual.image) +
            '.';
        return element('p', { class: 'note' }, text);
    }

    /// Both in the same scale, whatever room there is for the wider one.
    function toOneScale(pictures, stage, zoom) {
        const widest = Math.max(...pictures.map(({ image }) => image.naturalWidth));
        const highest = Math.max(...pictures.map(({ image }) => image.naturalHeight));
        stage.style.setProperty('--widest', widest * zoom + 'px');
        stage.style.setProperty('--shape', widest / highest);
        for (const { image } of pictures)
            image.style.width = (100 * image.naturalWidth) / widest + '%';
        return widest * zoom;
    }

    /// For paper: both at once, since a page that gets printed waits for nothing but pictures. Most
    /// pictures have no expected one beside them; one that was found should be there.
    function sideBySide(uri) {
        const uris = { ...urisOf(uri), difference: null };
        const { expected, actual } = figuresOf(uris);
        const onMissing = (one, replace) => one && one.isThere.then((there) => there || replace());
        onMissing(expected, () => expected.node.remove());
        onMissing(actual, () => actual.node.replaceWith(missing('Actual', uris.actual)));
        const nodes = [expected && expected.node, actual.node];
        const stage = element('div', { class: 'stage side' }, nodes);
        const box = element('div', null, stage);
        Promise.all([expected && expected.isThere, actual.isThere]).then((there) => {
            if (!there.every(Boolean)) return;
            toOneScale([expected, actual], stage, 1);
            report.dom.append(box, [sizeNote(expected, actual)]);
        });
        return box;
    }

    report.pictures = { urisOf, figuresOf, sizeNote, toOneScale, missing, sideBySide };
})((globalThis.morvexReport = globalThis.morvexReport || {}));
