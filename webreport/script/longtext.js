// Texts of any length. Of a very long one the start is drawn, the rest when it is asked for.
(function (report) {
    'use strict';

    const { append, element, button } = report.dom;
    const longest = 20000;

    /// The first `most` characters, or one less where these would end within a surrogate pair.
    function startOf(text, most) {
        const splitsPair = /[\uD800-\uDBFF]/.test(text[most - 1]) && text.length > most;
        return text.slice(0, splitsPair ? most - 1 : most);
    }

    /// A block that keeps blanks and line feeds.
    function textBlock(text, className) {
        const block = element(
            'pre',
            { class: 'text ' + (className || ''), tabindex: '0' },
            startOf(text, longest),
        );
        if (text.length <= longest) return block;
        const more = button(
            'Show all ' + report.format.count(text.length) + ' characters',
            () => {
                block.replaceChildren();
                append(block, [text]);
                more.remove();
            },
            { class: 'more' },
        );
        return [block, more];
    }

    report.startOf = startOf;
    report.textBlock = textBlock;
})((globalThis.morvexReport = globalThis.morvexReport || {}));
