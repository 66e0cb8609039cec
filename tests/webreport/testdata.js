// Makes data files in the form in which the runner writes them. Times count up by themselves.
'use strict';

class RunBuilder {
    /// `start` is the time of the run, as Date.parse takes it.
    constructor(name, start = '2026-03-02T22:00:00Z', type = 'testsuite') {
        this.now = Date.parse(start);
        this.maxRetry = null;
        this.document = { version: { major: 1, minor: 2 }, tests: [] };
        this.open = [{ tests: this.document.tests }];
        this.begin(type, name, { uri: 'file:///home/ci/' + name });
    }

    time() {
        return new Date(this.now).toISOString().slice(0, 19) + 'Z';
    }

    wait(seconds) {
        this.now += seconds * 1000;
        return this;
    }

    begin(type, name, more = {}) {
        const test = { name, start: this.time(), type, ...more, tests: [] };
        this.open[this.open.length - 1].tests.push(test);
        this.open.push(test);
        return this;
    }

    end() {
        const test = this.open.pop();
        test.stop = this.time();
        return this;
    }

    within(type, name, more, body) {
        this.begin(type, name, more);
        body(this);
        return this.end();
    }

    testCase(name, body, more = {}) {
        return this.within('testcase', name, { uri: 'x-testsuite:/' + name, ...more }, body);
    }

    attempt(name, count, max, body) {
        return this.testCase(name, body, { retry: { count, max } });
    }

    section(name, body, description) {
        return this.within('section', name, description ? { description } : {}, body);
    }

    entry(entry) {
        this.open[this.open.length - 1].tests.push(entry);
        return this;
    }

    message(result, text, more = {}) {
        return this.entry({ result, text, time: this.time(), type: 'msg', ...more });
    }

    log(text, more) {
        return this.message('LOG', text, more);
    }

    verify(result, text, more = {}) {
        return this.entry({
            lineNo: 12, result, text, time: this.time(), type: 'scriptedVerificationResult',
            uri: 'x-testsuite:/tst_a/script.js', ...more,
        });
    }

    pass(text, more) {
        return this.verify('PASS', text, more);
    }

    fail(text, more) {
        return this.verify('FAIL', text, more);
    }

    attach(uri, type = 'file') {
        return this.entry({ time: this.time(), type, uri });
    }

    skipped(type, name, description) {
        const time = this.time();
        return this.entry({
            ...(description ? { description } : {}), isSkipped: true, name, start: time, stop: time,
            type,
        });
    }

    finish() {
        while (this.open.length > 1) this.end();
        return this.document;
    }
}

/// Keys of a test in the order in which the runner learns them, all others sorted.
function ordered(key, value) {
    if (!value || typeof value !== 'object' || Array.isArray(value)) return value;
    const late = ['retry', 'tests', 'stop'];
    const lateOf = (name) => (Array.isArray(value.tests) ? late.indexOf(name) : -1);
    const names = Object.keys(value).sort((a, b) => lateOf(a) - lateOf(b) || (a < b ? -1 : 1));
    return 'version' in value
        ? value
        : Object.fromEntries(names.map((name) => [name, value[name]]));
}

function documentText(document) {
    return JSON.stringify(document, ordered).replace(
        /[\u0080-\uffff]/g,
        (unit) => '\\u' + unit.charCodeAt(0).toString(16).padStart(4, '0'),
    );
}

function statement(document) {
    return 'data.push( ' + documentText(document) + ' );\n\n';
}

function dataFile(documents) {
    return 'var data = [];\n' + documents.map(statement).join('');
}

/// A run of one test case whose sections are never ended: `depth` of them, each with one passed
/// result, and a failure in the innermost. As text, since JSON.stringify calls itself.
function deepStatement(depth) {
    const run = new RunBuilder('suite_deep').testCase('tst_deep', (one) => one.fail('innermost'));
    const text = statement(run.finish());
    const failure = text.indexOf('{"lineNo"');
    const time = '"2026-03-02T22:00:00Z"';
    const open =
        `{"name":"Loop","start":${time},"type":"section","tests":[` +
        `{"result":"PASS","text":"round","time":${time},"type":"scriptedVerificationResult"},`;
    const end = text.indexOf('}', failure) + 1;
    return (
        text.slice(0, failure) +
        open.repeat(depth) +
        text.slice(failure, end) +
        `],"stop":${time}}`.repeat(depth) +
        text.slice(end)
    );
}

function tableRow(elementType, line, texts, colors = []) {
    const cells = texts.map((text, index) => ({
        properties: [
            ...(colors[index] ? [{ name: 'backgroundColor', value: colors[index] }] : []),
            { name: 'text', value: text },
        ],
    }));
    return { diffType: 'row', diffValue: { cells, line }, elementType };
}

/// What the page shows of the runs: the latest of each suite.
function shownOf(documents) {
    const { runsOf, shown, suites } = require('./parts');
    return shown.build(suites.latestOf(runsOf(documents)));
}

module.exports = {
    shownOf, RunBuilder, dataFile, deepStatement, documentText, statement, tableRow,
};
