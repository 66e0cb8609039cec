// Failures that have one cause: the same message, but for what differs from case to case, at the
// same place.
(function (report) {
    'use strict';

    const { isFailed, entriesWithin } = report.model;
    const { suites } = report;

    const quoted = /'(?:[^'\\\n]|\\.)*'|"(?:[^"\\\n]|\\.)*"|“[^”\n]*”|‘[^’\n]*’/g;
    // What else differs between two failures of one cause, the longer forms first.
    const variable = [
        /\d{4}-\d\d-\d\d(?:[T ]\d\d:\d\d(?::\d\d(?:[.,]\d+)?)?(?:Z|[+-]\d\d:?\d\d)?)?/g,
        /\b\d\d?:\d\d(?::\d\d(?:[.,]\d+)?)?\b/g,
        /\b[a-z][a-z0-9+.-]*:\/+[^\s'"]+/gi,
        /(?:[A-Za-z]:)?(?:[/\\][\w.@%+~-]+){2,}/g,
        /\b0x[0-9a-f]+\b|\b[0-9a-f]{8}-[0-9a-f-]{27}\b/gi,
        /[-+]?\d+(?:[.,]\d+)*/g,
    ];

    // A difference further on is not what a person would call another message.
    const longest = 500;
    // Quoted texts may be long; the forms of the others take much time for much text.
    const longestQuoting = 20000;

    // Not each failure of a cause has one.
    const screenshot = / \(Screenshot (?:in "[^"\n]*"|taken from the desktop is invalid)\)$/;

    /// A message without numbers, paths, times and quoted texts.
    function normalized(text) {
        const bare = text.slice(0, longestQuoting).replace(screenshot, '');
        let short = bare.replace(quoted, '…').slice(0, 4 * longest);
        for (const form of variable) short = short.replace(form, '…');
        return short.replace(/\s+/g, ' ').trim().slice(0, longest);
    }

    /// The place of a failure; within the directory of its test case it counts from there, so that
    /// test cases made from one pattern have one place.
    function placeOf(raw, testCase) {
        const own = testCase && testCase.uri ? testCase.uri + '/' : null;
        const { uri = '', lineNo = 0 } = raw;
        const file = own && uri.startsWith(own) ? uri.slice(own.length) : uri;
        return file && lineNo > 0 ? file + ':' + lineNo : file;
    }

    /// Failures of equal keys have one cause. `raw` is a failure, null for a test that was
    /// running when its run broke off.
    function keyOf(raw, testCase) {
        if (!raw) return 'interrupted';
        const detail = report.values.splitStack(raw.detail || '').text;
        const texts = [raw.text || '', detail.split('\n')[0]].map(normalized);
        return JSON.stringify([...texts, placeOf(raw, testCase)]);
    }

    /// The attempt that counts.
    function lastAttempt(node) {
        return node.kind === 'attempts' ? node.children[node.children.length - 1] : node;
    }

    /// The first failure of the attempt that counts; undefined when it has none.
    function firstFailure(run, testCase) {
        return entriesWithin(run, lastAttempt(testCase), isFailed)[0];
    }

    /// The oldest run up to which all runs of the suite that ran one of the test cases had the
    /// cause of this key, from the shown one back.
    function sinceIn(source, key, testCaseKeys) {
        let since = source;
        for (const run of suites.earlier(source)) {
            let hasRun = false;
            let isThere = false;
            for (const testCaseKey of testCaseKeys) {
                const known = run.summary.cases.get(testCaseKey);
                if (!known || known.outcome === 'skipped') continue;
                hasRun = true;
                const failed = isFailed(known);
                isThere = failed && keyOf(known.failure, known.raw) === key;
                if (isThere) break;
            }
            if (isThere) since = run;
            else if (hasRun) break;
        }
        return since;
    }

    /// The oldest one over all suites, where it is not new.
    function sinceOf({ key, keysOf }) {
        const all = [...keysOf].map(([{ source }, testCaseKeys]) => ({
            source,
            since: sinceIn(source, key, testCaseKeys),
        }));
        const known = all.filter(({ source, since }) => since !== source);
        return (known.length > 0 ? known : all)
            .map(({ since }) => since)
            .reduce((one, other) => (other.index < one.index ? other : one));
    }

    function addTo(causes, run, testCase, failure) {
        const key = keyOf(failure && failure.raw, testCase.raw);
        const part = report.shown.partOf(run, testCase);
        if (!causes.has(key)) causes.set(key, { key, testCases: [], keysOf: new Map() });
        const cause = causes.get(key);
        cause.testCases.push(testCase);
        if (!cause.failure) cause.failure = failure || null;
        if (!cause.keysOf.has(part)) cause.keysOf.set(part, []);
        cause.keysOf.get(part).push(report.shown.keyIn(part, testCase));
    }

    /// The causes of what failed among the test cases, the most frequent first: `{key, failure,
    /// testCases, since, sources}`. `failure` is the first entry of it, null for what was
    /// interrupted; `since` the run that it came with, and `sources` the runs that have it now. A
    /// test case counts once, by its first failure.
    function causesOf(run, testCases) {
        const causes = new Map();
        for (const testCase of testCases) {
            if (isFailed(testCase)) addTo(causes, run, testCase, firstFailure(run, testCase));
        }
        return [...causes.values()]
            .sort((a, b) => b.testCases.length - a.testCases.length)
            .map((cause) => ({
                ...cause,
                since: sinceOf(cause),
                sources: [...cause.keysOf.keys()].map(({ source }) => source),
            }));
    }

    report.causes = { normalized, causesOf, firstFailure, lastAttempt };
})((globalThis.morvexReport = globalThis.morvexReport || {}));
