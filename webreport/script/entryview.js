// What is shown of a message, a verification result or an attachment.
(function (report) {
    'use strict';

    const { element, fileLink } = report.dom;
    const { locationLink, locationOfPath, locationText } = report.format;
    const beforeShown = 5;

    function block(title, ...content) {
        return element('section', { class: 'block' }, element('h2', null, title), content);
    }

    function values(raw) {
        const compared = report.values.comparedValues(raw);
        return compared ? block('Values', report.valueView.valueView(compared)) : null;
    }

    function table(raw) {
        const differs = Array.isArray(raw.tablediff) && raw.tablediff.length > 0;
        return differs
            ? block('Table differences', report.tableDiff.tableView(raw.tablediff))
            : null;
    }

    function failedImage(raw) {
        const link = locationLink(raw.failedImageUri);
        return link && /\.\w+$/.test(link)
            ? block('Pictures', report.imageCompare.imageCompare(link))
            : null;
    }

    function objectDump(raw) {
        const link = locationLink(raw.failedObjectDump);
        return link && /\.\w+$/.test(link)
            ? block('Object snapshot', element('p', null, fileLink(raw.failedObjectDump)))
            : null;
    }

    function thumbnail(link, label) {
        const image = element('img', { src: link, alt: label, loading: 'lazy' });
        const anchor = element(
            'a',
            { class: 'thumbnail', href: link, target: '_blank', rel: 'noopener' },
            image,
        );
        image.addEventListener('error', () =>
            anchor.replaceChildren(label + ' (picture not found)'),
        );
        return anchor;
    }

    function screenshot(raw) {
        const link = locationLink(raw.screenshotUri);
        return link ? block('Screenshot', thumbnail(link, locationText(raw.screenshotUri))) : null;
    }

    function stack(frames, base) {
        return block(
            'Call stack',
            element(
                'ol',
                { class: 'stack' },
                frames.map((frame) =>
                    element(
                        'li',
                        null,
                        frame.name ? element('span', { class: 'function' }, frame.name) : null,
                        fileLink(locationOfPath(frame.file, base), frame.line, base),
                    ),
                ),
            ),
        );
    }

    /// The sentence with the values is left out where these stand beside each other.
    function detail(raw, base) {
        if (!raw.detail || report.values.isOnlyValues(raw)) return null;
        const { text, frames } = report.values.splitStack(raw.detail);
        return [
            text ? block('Detail', report.textBlock(text)) : null,
            frames.length > 0 ? stack(frames, base) : null,
        ];
    }

    function attachment(node) {
        const { uri } = node.raw;
        const link = locationLink(uri);
        const label = locationText(uri);
        const content = [element('p', null, fileLink(uri))];
        if (link && /\.(png|jpe?g|gif|webp|bmp|svg)$/i.test(link))
            content.push(thumbnail(link, label));
        else if (link && /\.(mp4|webm|ogv)$/i.test(link))
            content.push(element('video', { src: link, controls: true, preload: 'metadata' }));
        return block('File', content);
    }

    /// The entries that led to a failure, which a filter may hide.
    function before(app, node) {
        if (!report.model.isFailed(node)) return null;
        const entries = node.parent.children.filter((one) => one.kind === 'entry');
        const place = entries.indexOf(node);
        return report.linkBlock(
            app,
            'Just before',
            entries.slice(Math.max(0, place - beforeShown), place),
        );
    }

    function entryView(app, node) {
        const raw = node.raw;
        const base = app.run.root.raw.uri;
        const long = node.name.length > 300 || node.name.includes('\n');
        return [
            long ? block('Text', report.textBlock(node.name)) : null,
            values(raw),
            table(raw),
            failedImage(raw),
            objectDump(raw),
            detail(raw, base),
            screenshot(raw),
            node.entryKind === 'attachment' ? attachment(node) : null,
            before(app, node),
        ];
    }

    report.entryView = entryView;
})((globalThis.morvexReport = globalThis.morvexReport || {}));
