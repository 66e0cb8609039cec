// Characters that a reader can't see, or that turn the text round them: how they are shown.
(function (report) {
    'use strict';

    // Drawn wherever they are: controls other than tab and line ends, and all that sets the
    // direction of the text after it.
    const harmful =
        /[\0-\x08\x0B\x0C\x0E-\x1F\x7F-\x9F\u061C\u200E\u200F\u202A-\u202E\u2066-\u2069]/;

    // Drawn where two texts differ in them.
    const unseen = /[\p{Cc}\p{Cf}\p{Zs}\p{Zl}\p{Zp}\p{Default_Ignorable_Code_Point}\u2800]/u;

    const symbols = new Map([
        [' ', '·'],
        ['\t', '→'],
        ['\n', '⏎\n'],
        ['\u00a0', '⍽'],
    ]);

    const names = new Map([
        [0x09, 'tab'],
        [0x0a, 'line feed'],
        [0x0d, 'carriage return'],
        [0x20, 'blank'],
        [0xa0, 'no-break space'],
        [0xad, 'soft hyphen'],
        [0x200b, 'zero width space'],
        [0x200c, 'zero width non-joiner'],
        [0x200d, 'zero width joiner'],
        [0x200e, 'left-to-right mark'],
        [0x200f, 'right-to-left mark'],
        [0x202e, 'right-to-left override'],
        [0x202f, 'narrow no-break space'],
        [0x2060, 'word joiner'],
        [0x2800, 'braille blank'],
        [0x3164, 'hangul filler'],
        [0xfe0e, 'variation selector 15'],
        [0xfe0f, 'variation selector 16'],
        [0xfeff, 'byte order mark'],
    ]);

    function codeOf(character) {
        return 'U+' + character.codePointAt(0).toString(16).toUpperCase().padStart(4, '0');
    }

    function nameOf(character) {
        const name = names.get(character.codePointAt(0));
        return codeOf(character) + (name ? ' (' + name + ')' : '');
    }

    /// A glyph where there is one for the character, else its code.
    function shownAs(character) {
        const code = character.codePointAt(0);
        if (symbols.has(character)) return { symbol: symbols.get(character) };
        if (code < 0x20) return { symbol: String.fromCodePoint(0x2400 + code) };
        return code === 0x7f ? { symbol: '␡' } : { code: codeOf(character) };
    }

    /// The text as a list of texts and, for what `pattern` finds, of `{symbol}` or `{code}`.
    function pieces(text, pattern) {
        const list = [];
        let plain = 0;
        for (const { 0: character, index } of text.matchAll(
            new RegExp(pattern, pattern.flags + 'g'),
        )) {
            if (index > plain) list.push(text.slice(plain, index));
            list.push(shownAs(character));
            plain = index + character.length;
        }
        if (plain < text.length) list.push(text.slice(plain));
        return list;
    }

    function seen(text) {
        return text.replace(new RegExp(unseen, 'gu'), '');
    }

    /// How two different texts differ that look the same; null for others.
    function onlyDifference(expected, actual) {
        if (seen(expected) === seen(actual)) return 'in characters that can’t be seen';
        return expected.normalize() === actual.normalize()
            ? 'in how their characters are composed'
            : null;
    }

    report.invisibles = { harmful, unseen, pieces, nameOf, onlyDifference };
})((globalThis.morvexReport = globalThis.morvexReport || {}));
