// Builds elements. Texts of a run only ever become text nodes, so that no message is read as HTML.
(function (report) {
    'use strict';

    function append(node, children) {
        for (const child of children.flat(Infinity)) {
            if (child !== null && child !== undefined && child !== false) node.append(child);
        }
        return node;
    }

    /// `properties` are attributes, but for `class`, `onclick` and its like (functions), and the
    /// properties `value`, `checked` and `hidden`. Attributes that are null or false are left out.
    function element(name, properties, ...children) {
        const node = document.createElement(name);
        for (const [key, value] of Object.entries(properties || {})) {
            if (typeof value === 'function') node.addEventListener(key.slice(2), value);
            else if (key === 'class') node.className = value;
            else if (key === 'value' || key === 'checked' || key === 'hidden') node[key] = value;
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

    /// A link to a file of the report; plain text where the page can't reach the location.
    function fileLink(uri, lineNo, base) {
        const text = report.format.locationText(uri, lineNo);
        const href = report.format.locationLink(uri, base);
        return href ? element('a', { href, target: '_blank', rel: 'noopener' }, text) : text;
    }

    /// A list of which a part is shown until more is asked for. `build` makes one element of an
    /// item.
    function growingList(items, build, step, properties) {
        const list = element('ul', properties);
        const more = button('', () => grow(), { class: 'more' });
        function grow() {
            const start = list.childElementCount;
            append(
                list,
                items.slice(start, start + step).map((item) => element('li', null, build(item))),
            );
            const left = items.length - list.childElementCount;
            more.hidden = left === 0;
            more.textContent =
                'Show ' +
                report.format.count(Math.min(step, left)) +
                ' more of ' +
                report.format.count(left);
        }
        grow();
        return [list, more];
    }

    report.dom = { append, element, icon, button, fileLink, growingList };
})((globalThis.morvexReport = globalThis.morvexReport || {}));
