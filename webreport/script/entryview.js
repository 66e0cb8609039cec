// What is shown of a message, a verification result or an attachment.
//
// `views` are the views of its parts, for the screen or for paper: `{textBlock, valueView,
// tableView, pictures, video}`.
(function (report) {
    'use strict';

    const { element, fileLink } = report.dom;
    const { locationLink, locationOfPath, locationText } = report.format;

    const unexpectedPass =
        'This passed, but the script expects it to fail: the fault it waits for may be mended.';

    function block(title, ...content) {
        return element('section', { class: 'block' }, element('h2', null, title), content);
    }

    function values(views, raw) {
        const compared = report.values.comparedValues(raw);
        return compared ? block('Values', views.valueView(compared)) : null;
    }

    function table(views, raw) {
        const differs = Array.isArray(raw.tablediff) && raw.tablediff.length > 0;
        return differs ? block('Table differences', views.tableView(raw.tablediff)) : null;
    }

    /// Whether the page can reach the location, and it names a file.
    function isFile(uri) {
        return /\.\w+$/.test(locationLink(uri) || '');
    }

    function failedImage(views, { failedImageUri }) {
        return isFile(failedImageUri) ? block('Pictures', views.pictures(failedImageUri)) : null;
    }

    function objectDump({ failedObjectDump }) {
        return isFile(failedObjectDump)
            ? block(
                  'Object snapshot',
                  element('p', null, fileLink(failedObjectDump)),
                  report.visualTrees(locationLink(failedObjectDump)),
              )
            : null;
    }

    function thumbnail(link, label) {
        const image = element('img', { alt: label, loading: 'lazy', src: link });
        const anchor = element(
            'a',
            { class: 'thumbnail', href: link, target: '_blank', rel: 'noopener' },
            image,
        );
        image.addEventListener('error', () =>
            anchor.replaceWith(element('p', { class: 'note' }, label + ': picture not found')),
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

    /// The sentence with the values is left out where these are side by side.
    function detail(views, raw, base) {
        if (!raw.detail || report.values.isOnlyValues(raw)) return null;
        const { text, frames } = report.values.splitStack(raw.detail);
        return [
            text ? block('Detail', views.textBlock(text)) : null,
            frames.length > 0 ? stack(frames, base) : null,
        ];
    }

    function attachment(views, node) {
        const { uri } = node.raw;
        const link = locationLink(uri);
        const label = locationText(uri);
        const content = [element('p', null, fileLink(uri))];
        if (link && /\.(png|jpe?g|gif|webp|bmp|svg)$/i.test(link))
            content.push(thumbnail(link, label));
        else if (link && /\.(mp4|webm|ogv)$/i.test(link)) content.push(views.video(link, label));
        else if (
            link &&
            /\.(txt|log|out|err|json|xml|csv|tsv|md|js|conf|ini|yaml|yml)$/i.test(link)
        )
            content.push(views.textFile(link, label));
        return block('File', content);
    }

    function entryView(app, node, views) {
        const raw = node.raw;
        const base = report.shown.baseOf(app.run, node);
        const isShortened = node.name && report.marks.shortTitle(node) !== node.name;
        return [
            node.entryKind === 'xpass' ? element('p', { class: 'notice' }, unexpectedPass) : null,
            isShortened ? block('Text', views.textBlock(node.name)) : null,
            values(views, raw),
            table(views, raw),
            failedImage(views, raw),
            objectDump(raw),
            detail(views, raw, base),
            screenshot(raw),
            node.entryKind === 'attachment' ? attachment(views, node) : null,
        ];
    }

    /// What led to a failure, which a filter may hide. The section of each is named where it is
    /// not that of the failure.
    function before(app, failure) {
        const title = report.why.isCrash(failure) ? 'What it did last' : 'Just before';
        const isNamed = ({ parent }) =>
            parent !== failure.parent && !parent.attempt && parent !== parent.testCase;
        const sectionOf = (one) =>
            isNamed(one) ? 'in ' + report.marks.shortTitle(one.parent, 80) : '';
        const entries = report.why.before(app.run, failure);
        return report.linkBlock(app, title, entries, { reasonOf: sectionOf });
    }

    report.entryView = { entryView, before };
})((globalThis.morvexReport = globalThis.morvexReport || {}));
