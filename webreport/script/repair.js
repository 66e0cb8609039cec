// Reads the text of a data file that a browser may refuse, because a run was killed while it wrote.
(function (report) {
    'use strict';

    const header = 'var data = [];\n';
    const statement = 'data.push( ';
    const runStart = statement + '{"version"';
    const lostRun = { version: { major: 1, minor: 2 }, tests: [], ended: false };

    /// After the closing quote of the string that begins at `open`; 0 when the text ends
    /// before it.
    function endOfString(text, open) {
        for (
            let quote = text.indexOf('"', open + 1);
            quote >= 0;
            quote = text.indexOf('"', quote + 1)
        ) {
            let before = quote;
            while (text[before - 1] === '\\') --before;
            if ((quote - before) % 2 === 0) return quote + 1;
        }
        return 0;
    }

    /// Goes through a document that may break off anywhere, and remembers the last place at which
    /// only tests are open: everything after it is a node cut in its middle.
    class DocumentScanner {
        constructor(text) {
            this.text = text;
            /// What is open, innermost first, each with what it is in as `parent`. A link of this
            /// chain never changes its place, so to remember one costs the same at any depth.
            this.top = null;
            this.key = '';
            /// `{end, open}`; null when the text breaks off before its first array of tests.
            this.whole = null;
        }

        /// An object may end after its tests, and after each member that follows them.
        remember(end) {
            if (!this.top || this.top.isTests || this.top.hasTests)
                this.whole = { end, open: this.top };
        }

        open(character, end) {
            const parent = this.top;
            const isArray = character === '[';
            const isTests =
                isArray && this.key === 'tests' && parent && (!parent.parent || parent.isNode);
            if (isTests) parent.hasTests = true;
            this.top = {
                closer: isArray ? ']' : '}',
                isTests,
                isNode: Boolean(parent && parent.isTests),
                parent,
            };
            this.key = '';
            this.remember(end);
        }

        close(character, end) {
            const closed = this.top;
            if (!closed || closed.closer !== character) return false;
            this.top = closed.parent;
            this.remember(end);
            return true;
        }

        readString(open, end) {
            if (this.text[open - 1] !== ':') this.key = this.text.slice(open + 1, end - 1);
            else this.remember(end);
        }

        scan() {
            const token = /["{}[\]]/g;
            for (let match = token.exec(this.text); match; match = token.exec(this.text)) {
                const character = match[0];
                if (character === '"') {
                    token.lastIndex = endOfString(this.text, match.index);
                    if (token.lastIndex === 0) break;
                    this.readString(match.index, token.lastIndex);
                } else if (character === '{' || character === '[') {
                    this.open(character, token.lastIndex);
                } else if (!this.close(character, token.lastIndex)) {
                    break;
                }
            }
            return this.whole;
        }
    }

    function parse(text) {
        try {
            return JSON.parse(text);
        } catch {
            return null;
        }
    }

    function closersOf(open) {
        const closers = [];
        for (let one = open; one; one = one.parent) closers.push(one.closer);
        return closers.join('');
    }

    function markIfNotEnded(run) {
        const root = run.tests && run.tests[0];
        if (!root || !('stop' in root)) run.ended = false;
        return run;
    }

    /// The document of a run from a text that breaks off anywhere.
    function closeDocument(text) {
        const whole = new DocumentScanner(text).scan();
        const closed = whole && parse(text.slice(0, whole.end) + closersOf(whole.open));
        return markIfNotEnded(closed || { ...lostRun });
    }

    /// The document, and whether it had to be closed.
    function readRun(text) {
        const end = text.lastIndexOf(' );');
        const whole = end < 0 ? null : parse(text.slice(0, end));
        return whole
            ? { run: whole, repaired: false }
            : { run: closeDocument(text), repaired: true };
    }

    /// Where the runs begin: no text within a run can hold these bytes, since quotes are escaped.
    /// A statement at the end of the file may be too short to be recognised by them.
    function runStarts(text) {
        const starts = [];
        for (let at = text.indexOf(runStart); at >= 0; at = text.indexOf(runStart, at + 1))
            starts.push(at);
        const last = text.lastIndexOf('\n') + 1;
        const tail = text.slice(last);
        if (tail.length > 0 && tail.length < runStart.length && runStart.startsWith(tail))
            starts.push(last);
        return starts;
    }

    function readJsonReport(text) {
        const { run, repaired } = readRun(text.trimEnd() + ' );');
        return { runs: [run], repaired: repaired ? [0] : [] };
    }

    function readStatements(text) {
        const starts = runStarts(text);
        const reads = starts.map((start, index) =>
            readRun(text.slice(start + statement.length, starts[index + 1])),
        );
        return {
            runs: reads.map((read) => read.run),
            repaired: reads.flatMap((read, index) => (read.repaired ? [index] : [])),
        };
    }

    /// The runs in the text of a data file, or of a JSON report: `runs` as documents, and in
    /// `repaired` the indices of those that had to be closed. Null for a text that is neither.
    function readDataFile(contents) {
        // A power failure may leave the end of a file filled with zeros.
        const text = contents.replace(/\0+$/, '');
        if (text.startsWith('{"version"')) return readJsonReport(text);
        if (text.startsWith(header) || text.includes(runStart)) return readStatements(text);
        return text && header.startsWith(text) ? { runs: [{ ...lostRun }], repaired: [0] } : null;
    }

    report.repair = { readDataFile };
})((globalThis.morvexReport = globalThis.morvexReport || {}));
