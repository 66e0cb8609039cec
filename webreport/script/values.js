// Takes apart the texts of a result: compared values, and a call stack.
(function (report) {
    'use strict';

    const numbers = /Expected (-?\d+), got (-?\d+)\.$/;

    // No line of a call stack is longer; the forms below take long for a text without blanks.
    const longestFrame = 2000;

    const frameForms = [
        {
            form: /^\s*(?:at )?([^@\s]*)@(\S.*?):(\d+)(?::\d+)?$/,
            name: 1,
            file: 2,
            line: 3,
            sure: true,
        },
        { form: /^\s*at (.+?) ?\((.+?):(\d+)(?::\d+)?\)$/, name: 1, file: 2, line: 3, sure: true },
        { form: /^\s*at (\S.*?):(\d+)(?::\d+)?$/, file: 1, line: 2, sure: true },
        { form: /^\s*(\S*?[/.]\S*?):(\d+)(?::\d+)?$/, file: 1, line: 2 },
    ];

    /// The texts may be long and hold anything, quotes too: the first separator counts.
    function quotedValues(text) {
        const start = text.indexOf("Expected '") + "Expected '".length;
        const middle = text.indexOf("', got '", start);
        if (start < "Expected '".length || middle < 0 || !text.endsWith("'.")) return null;
        return {
            expected: text.slice(start, middle),
            actual: text.slice(middle + "', got '".length, -2),
        };
    }

    function valuesOfText(text) {
        const match = numbers.exec((text || '').slice(-100));
        return match ? { expected: match[1], actual: match[2] } : quotedValues(text || '');
    }

    /// `{expected, actual}` of a comparison that did not find the same; null when there is none.
    /// An empty value has no key in the data.
    function comparedValues(raw) {
        if ('expectedValue' in raw || 'actualValue' in raw) {
            const values = { expected: raw.expectedValue || '', actual: raw.actualValue || '' };
            return values.expected === values.actual ? null : values;
        }
        return valuesOfText(raw.detail) || valuesOfText(raw.text);
    }

    function frameOf(line) {
        if (line.length > longestFrame) return null;
        for (const { form, name, file, line: number, sure } of frameForms) {
            const match = form.exec(line);
            if (match)
                return {
                    name: name ? match[name] : '',
                    file: match[file],
                    line: Number(match[number]),
                    sure,
                };
        }
        return null;
    }

    /// A detail as `{text, frames}`: the lines that look like a call stack at its end, innermost
    /// first, and what is before. A single line that may as well be a sentence is no stack.
    function splitStack(detail) {
        const lines = detail.trimEnd().split('\n');
        const frames = [];
        let first = lines.length;
        for (let frame; first > 0 && (frame = frameOf(lines[first - 1])); --first)
            frames.unshift(frame);
        if (!frames.some((frame) => frame.sure) && frames.length < 2)
            return { text: detail, frames: [] };
        return { text: lines.slice(0, first).join('\n').trimEnd(), frames };
    }

    /// Whether the detail says no more than the two values beside each other.
    function isOnlyValues(raw) {
        const { detail } = raw;
        if (!('expectedValue' in raw || 'actualValue' in raw))
            return Boolean(valuesOfText(detail)) && /^Expected /.test(detail);
        return (
            detail ===
            "'" +
                (raw.actualValue || '') +
                "' and '" +
                (raw.expectedValue || '') +
                "' are not equal"
        );
    }

    report.values = { comparedValues, isOnlyValues, splitStack };
})((globalThis.morvexReport = globalThis.morvexReport || {}));
