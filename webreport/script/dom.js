// Builds elements. Texts of a run only ever become text nodes, so that no message is read as HTML.
(function (report) {
    'use strict';

    // A text of nothing but controls costs no element for each.
    const mostDrawn = 2000;

    /// A character that can't be shown as it is, in a form that can be seen.
    function drawnCharacter({ symbol, code }) {
        return symbol || element('span', { class: 'codepoint' }, code);
    }

    function appendText(node, text) {
        if (!report.invisibles.harmful.test(text)) {
            node.append(text);
            return;
        }
        const pieces = report.invisibles.pieces(text, report.invisibles.harmful);
        const drawn = pieces
            .slice(0, mostDrawn)
            .map((piece) => (typeof piece === 'string' ? piece : drawnCharacter(piece)));
        const rest = pieces
            .slice(mostDrawn)
            .map((piece) => piece.symbol || piece.code || piece)
            .join('');
        node.append(...drawn, rest);
    }

    function append(node, children) {
        for (const child of children.flat(Infinity)) {
            if (child === null || child === undefined || child === false) continue;
            if (typeof child === 'string') appendText(node, child);
            else node.append(child);
        }
        return node;
    }

    /// `properties` are attributes, and handlers of events as functions. Attributes that are null
    /// or false are left out.
    function element(name, properties, ...children) {
        const node = document.createElement(name);
        for (const [key, value] of Object.entries(properties || {})) {
            if (typeof value === 'function') node.addEventListener(key.slice(2), value);
            else if (value !== null && value !== undefined && value !== false)
                node.setAttribute(key, value === true ? '' : value);
        }
        return append(node, children);
    }

    /// One of the drawings in the page. Without `label` it says nothing to a screen reader.
    function icon(name, label) {
        const space = 'http://www.w3.org/2000/svg';
        const svg = document.createElementNS(space, 'svg');
        svg.setAttribute('class', 'icon tone-' + name);
        svg.setAttribute(label ? 'role' : 'aria-hidden', label ? 'img' : 'true');
        if (label) svg.setAttribute('aria-label', label);
        const use = document.createElementNS(space, 'use');
        use.setAttribute('href', '#icon-' + name);
        svg.append(use);
        return svg;
    }

    function button(label, onclick, properties, ...children) {
        return element(
            'button',
            { type: 'button', onclick, ...properties },
            children.length > 0 ? children : label,
        );
    }

    function tableHead(labels) {
        const cells = labels.map((label) => element('th', { scope: 'col' }, label));
        return element('thead', null, element('tr', null, cells));
    }

    /// A link to a file of the report; plain text where the page can't reach the location.
    function fileLink(uri, lineNo, base) {
        const text = report.format.locationText(uri, lineNo);
        const href = report.format.locationLink(uri, base);
        return href ? element('a', { href, target: '_blank', rel: 'noopener' }, text) : text;
    }

    /// A time of the machine that ran the tests. Where that was in the day of the reader is said
    /// when the mouse rests on it.
    function time(iso) {
        const { dateTime, zoneText } = report.format;
        return iso ? element('time', { datetime: iso, title: zoneText(iso) }, dateTime(iso)) : '';
    }

    report.dom = { append, element, icon, button, tableHead, fileLink, time, drawnCharacter };
})((globalThis.morvexReport = globalThis.morvexReport || {}));
