// What the search of the list looks through: all that the page shows of a node.
(function (report) {
    'use strict';

    const { outcomes } = report;
    const { locationText } = report.format;

    // Consecutive entries mostly come from one file, and a run may hold a million of them.
    let knownUri = '';
    let knownText = '';

    function located(uri, lineNo) {
        if (!uri) return '';
        if (uri !== knownUri) {
            knownUri = uri;
            knownText = locationText(uri);
        }
        return lineNo > 0 ? knownText + ':' + lineNo : knownText;
    }

    function tableText(tablediff) {
        return report.tableRows
            .rowsOf(tablediff)
            .flatMap((row) => [row.label, ...row.cells.flatMap((cell) => [cell.text, cell.color])])
            .join('\n');
    }

    function entryTexts({ raw, entryKind }) {
        const texts = [
            raw.text,
            raw.detail,
            raw.objectName,
            raw.property,
            raw.expectedValue,
            raw.actualValue,
            raw.result,
            outcomes.entryKind.get(entryKind).label,
            located(raw.uri, raw.lineNo),
        ];
        if (raw.vpUri) texts.push(locationText(raw.vpUri));
        if (Array.isArray(raw.tablediff)) texts.push(tableText(raw.tablediff));
        return texts;
    }

    /// Of a run neither its outcome nor its place count: everything is in it and would be found
    /// by them.
    function testTexts(node) {
        const { name, raw, outcome, attempt, parent } = node;
        const texts = [name, raw.summary, raw.description];
        if (parent) texts.push(outcomes.testOutcome.get(outcome).label);
        if (parent) texts.push(located(raw.uri, raw.lineNo));
        if (attempt) texts.push('Attempt ' + attempt + ' of ' + parent.children.length);
        if (node.isNew) texts.push(outcomes.testOutcome.get('new').label);
        if (node.isFixed) texts.push(outcomes.testOutcome.get('fixed').label);
        if (node.isAdded) texts.push(outcomes.testOutcome.get('added').label);
        return texts;
    }

    /// In small letters, one text on each line.
    function searchText(node) {
        if (node.search === undefined) {
            let all = '';
            for (const text of node.kind === 'entry' ? entryTexts(node) : testTexts(node))
                if (text) all += text + '\n';
            node.search = all.toLowerCase();
        }
        return node.search;
    }

    report.searchText = searchText;
})((globalThis.morvexReport = globalThis.morvexReport || {}));
