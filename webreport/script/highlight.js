// Marks the terms of the search where they are in the page.
(function (report) {
    'use strict';

    const { element } = report.dom;

    // More marks help nobody, and a long text may hold a short word any number of times.
    const mostMarks = 1000;

    // What comes from the tests; the words of the page itself are not searched.
    const searched = 'h1, pre, .name, .reason, .summary, .facts dd, .tablediff td, .stack li';

    /// Of the same length as the text: a letter that would become two stays as it is.
    function inSmallLetters(text) {
        const low = text.toLowerCase();
        if (low.length === text.length) return low;
        return text.replace(/[^]/gu, (letter) => {
            const small = letter.toLowerCase();
            return small.length === letter.length ? small : letter;
        });
    }

    /// Places `[from, to]` of the terms in the text, in order and apart from each other.
    function places(text, terms) {
        const low = inSmallLetters(text);
        const found = [];
        for (const term of terms) {
            for (let at = low.indexOf(term); at >= 0; at = low.indexOf(term, at + term.length)) {
                found.push([at, at + term.length]);
                if (found.length > mostMarks) break;
            }
        }
        found.sort((a, b) => a[0] - b[0] || b[1] - a[1]);
        let end = 0;
        return found.filter(([from, to]) => {
            const isApart = from >= end;
            if (isApart) end = to;
            return isApart;
        });
    }

    function markText(node, found) {
        const text = node.data;
        const parts = [];
        let plain = 0;
        for (const [from, to] of found) {
            parts.push(text.slice(plain, from));
            parts.push(element('mark', { class: 'found' }, text.slice(from, to)));
            plain = to;
        }
        parts.push(text.slice(plain));
        node.replaceWith(...parts.filter((part) => part !== ''));
    }

    function textsIn(host) {
        const walker = document.createTreeWalker(host, NodeFilter.SHOW_TEXT);
        const texts = [];
        while (walker.nextNode())
            if (walker.currentNode.parentNode.closest(searched)) texts.push(walker.currentNode);
        return texts;
    }

    function mark(host, terms) {
        if (terms.length === 0) return;
        let left = mostMarks;
        for (const node of textsIn(host)) {
            const found = places(node.data, terms).slice(0, left);
            if (found.length > 0) markText(node, found);
            left -= found.length;
            if (left <= 0) return;
        }
    }

    function clear(host) {
        for (const one of host.querySelectorAll('mark.found')) {
            const parent = one.parentNode;
            one.replaceWith(...one.childNodes);
            parent.normalize();
        }
    }

    report.highlight = { places, mark, clear };
})((globalThis.morvexReport = globalThis.morvexReport || {}));
