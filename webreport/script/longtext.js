// Texts of any length. Of a very long one the start is drawn, the rest when it is asked for.
(function (report) {
    'use strict';

    const { element, button } = report.dom;
    const longest = 20000;

    function cutAt(text) {
        const splitsPair = /[\uD800-\uDBFF]/.test(text[longest - 1]);
        return text.slice(0, splitsPair ? longest - 1 : longest);
    }

    /// A block that keeps blanks and line feeds.
    function textBlock(text, className) {
        const block = element(
            'pre',
            { class: 'text ' + (className || ''), tabindex: '0' },
            text.length > longest ? cutAt(text) : text,
        );
        if (text.length <= longest) return block;
        const more = button(
            'Show all ' + report.format.count(text.length) + ' characters',
            () => {
                block.textContent = text;
                more.remove();
            },
            { class: 'more' },
        );
        return [block, more];
    }

    /// What the author of a test wrote about it.
    function describe(raw) {
        return [
            raw.summary ? element('p', { class: 'summary' }, raw.summary) : null,
            raw.description ? textBlock(raw.description, 'description') : null,
        ];
    }

    report.textBlock = textBlock;
    report.describe = describe;
})((globalThis.morvexReport = globalThis.morvexReport || {}));
