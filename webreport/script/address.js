// The part of the address behind the "#": which run, which place in it, and the filters.
(function (report) {
    'use strict';

    /// "failed,-skipped" as a Map; unknown words are dropped.
    function parseModes(text, known) {
        const modes = new Map();
        for (const word of text.split(',')) {
            const key = word.replace(/^-/, '');
            if (known.has(key)) modes.set(key, word.startsWith('-') ? 'not' : 'only');
        }
        return modes;
    }

    function formatModes(modes) {
        return [...modes].map(([key, mode]) => (mode === 'not' ? '-' : '') + key).join(',');
    }

    /// `run` is an index from 0, or null for the latest run.
    function parse(hash) {
        const fields = new Map();
        for (const field of hash.replace(/^#/, '').split('&')) {
            const equals = field.indexOf('=');
            if (equals > 0) fields.set(field.slice(0, equals), field.slice(equals + 1));
        }
        const run = Number(fields.get('run'));
        return {
            run: Number.isInteger(run) && run > 0 ? run - 1 : null,
            at: fields.get('at') || '',
            text: report.format.decoded(fields.get('q') || ''),
            tests: parseModes(fields.get('tests') || '', report.outcomes.testOutcome),
            entries: parseModes(fields.get('entries') || '', report.outcomes.entryKind),
            slowest: fields.get('sort') === 'slowest',
        };
    }

    function format(state) {
        const fields = [];
        const add = (name, value) => {
            if (value) fields.push(name + '=' + value);
        };
        add('run', state.run === null ? '' : String(state.run + 1));
        add('at', state.at);
        add('q', report.format.encoded(state.text));
        add('tests', formatModes(state.tests));
        add('entries', formatModes(state.entries));
        add('sort', state.slowest ? 'slowest' : '');
        return '#' + fields.join('&');
    }

    /// The node at `at`, or the innermost one above it that this run has.
    function find(run, at) {
        for (let key = at; key; key = key.slice(0, Math.max(0, key.lastIndexOf('/')))) {
            const node = run.byKey.get(key);
            if (node) return node;
        }
        return run.root;
    }

    report.address = { parse, format, find };
})((globalThis.morvexReport = globalThis.morvexReport || {}));
