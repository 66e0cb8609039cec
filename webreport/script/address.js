// The part of the address after the "#": which run, which place in it, and the filters.
(function (report) {
    'use strict';

    const { decoded, encoded, escaped } = report.format;

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

    /// `run` is the key of a run, or its number from 1; empty for the latest of each suite.
    function parse(hash) {
        const fields = new Map();
        for (const field of hash.replace(/^#/, '').split('&')) {
            const equals = field.indexOf('=');
            if (equals > 0) fields.set(field.slice(0, equals), field.slice(equals + 1));
        }
        return {
            run: decoded(fields.get('run') || ''),
            at: escaped(fields.get('at') || '', /['()*]/g),
            text: decoded(fields.get('q') || ''),
            tests: parseModes(fields.get('tests') || '', report.outcomes.testOutcome),
            entries: parseModes(fields.get('entries') || '', report.outcomes.entryKind),
            slowest: fields.get('sort') === 'slowest',
        };
    }

    /// The fields that choose and order the rows of the list.
    function formatFilters(state) {
        return [
            ['q', encoded(state.text)],
            ['tests', formatModes(state.tests)],
            ['entries', formatModes(state.entries)],
            ['sort', state.slowest ? 'slowest' : ''],
        ];
    }

    function join(fields) {
        return fields
            .filter((field) => field[1])
            .map((field) => field.join('='))
            .join('&');
    }

    function format(state) {
        const run = encoded(state.run).replace(/%3A/g, ':').replace(/%7E/g, '~');
        return '#' + join([['run', run], ['at', state.at], ...formatFilters(state)]);
    }

    /// `{runs, isThere}`: the run that the address names, or the latest of each suite when there is
    /// none such.
    function findRuns(runs, key) {
        const found =
            runs.find((run) => run.key === key) || (/^\d+$/.test(key) && runs[Number(key) - 1]);
        return {
            runs: found ? [found] : report.suites.latestOf(runs),
            isThere: Boolean(found || !key),
        };
    }

    /// The node at `at`, or the innermost one above it that this run has.
    function findNode(run, at) {
        for (let key = at; key; key = key.slice(0, Math.max(0, key.lastIndexOf('/')))) {
            const node = report.model.nodeOf(run, key);
            if (node) return node;
        }
        return run.root;
    }

    report.address = {
        parse,
        format,
        filterText: (state) => join(formatFilters(state)),
        findRuns,
        findNode,
    };
})((globalThis.morvexReport = globalThis.morvexReport || {}));
