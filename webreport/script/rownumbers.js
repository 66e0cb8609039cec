// The numbers that the rows of a table difference have in their own tables.
//
// The data numbers an inserted row by the place in the expected table that it belongs to: by the
// oldest deletion that has no insertion yet, the last deletion, or the row after it. Each number
// says how many equal rows were left out before it, and by that where the row really is.
(function (report) {
    'use strict';

    const rowKinds = ['context', 'deletion', 'insertion'];

    class Places {
        constructor() {
            // The next row of the expected table.
            this.row = 0;
            this.inserted = 0;
            this.deleted = 0;
            this.forget();
        }

        forget() {
            this.unpaired = 0;
            this.isAfterDeletion = false;
        }

        get actualRow() {
            return this.row - this.deleted + this.inserted;
        }

        /// What was left out before the next row; null when nothing was.
        skip(count) {
            if (count === 0) return null;
            const equal = { count, expected: this.row, actual: this.actualRow };
            this.row += count;
            this.forget();
            return equal;
        }

        context(line) {
            const equal = this.skip(line - this.row);
            this.forget();
            return { line: this.row++, equal };
        }

        deletion(line) {
            const equal = this.skip(line - this.row);
            ++this.deleted;
            ++this.unpaired;
            this.isAfterDeletion = true;
            return { line: this.row++, equal };
        }

        /// What the data calls an inserted row before which nothing was left out.
        get nextInsertion() {
            const isMore = this.unpaired === 0 && this.isAfterDeletion;
            return isMore ? this.row - 1 : this.row - this.unpaired;
        }

        insertion(line) {
            const equal = line === this.nextInsertion ? null : this.skip(line - this.row);
            const own = this.actualRow;
            if (this.unpaired > 0) --this.unpaired;
            ++this.inserted;
            return { line: own, equal };
        }

        /// Whether a row with this number of the data can come next.
        canReach(kind, line) {
            if (kind === 'insertion') return line === this.nextInsertion || line > this.row;
            return rowKinds.includes(kind) && line >= this.row;
        }
    }

    /// For each difference `{line, equal}`: the number of its row in its own table, from 0, and the
    /// equal rows before it that the data left out, `{count, expected, actual}` with the numbers of
    /// the first one in both tables, or null. From the first one on whose number can't be, and for
    /// what is no row, the numbers are those of the data.
    function rowNumbers(tablediff) {
        const places = new Places();
        let isKnown = true;
        return tablediff.map(({ elementType: kind, diffType, diffValue }) => {
            const line = diffValue ? diffValue.line : undefined;
            if (diffType !== 'row') return { line, equal: null };
            isKnown = isKnown && Number.isInteger(line) && places.canReach(kind, line);
            return isKnown ? places[kind](line) : { line, equal: null };
        });
    }

    report.rowNumbers = rowNumbers;
})((globalThis.morvexReport = globalThis.morvexReport || {}));
