// Tables of test data and their records, as scripts see them. Documented in docs/scripting.md.
export default function (helpers) {
    var text = helpers.text;
    var show = helpers.show;
    var isInt32 = helpers.isInt32;

    // Keys that no loop over a record or a table meets.
    var sourceKey = Symbol("source");
    var rowKey = Symbol("row");
    var valuesKey = Symbol("values");
    var columnsKey = Symbol("columns");
    var aheadKey = Symbol("ahead");

    var recordsAhead = 256;

    // Loops ask for the values of a column in the order of their rows. They get some from the
    // runner at once, since a call of it takes longer than an element of a list.
    function valueOf(table, row, column) {
        var ahead = table[aheadKey][column];
        var place = row - ahead.first;
        if (place >= 0 && place < ahead.values.length)
            return ahead.values[place];
        var isNext = row === ahead.first + ahead.values.length;
        ahead.values = table[sourceKey].values(column, row, isNext ? recordsAhead : 1);
        ahead.first = row;
        return ahead.values[0];
    }

    // A record converts a value when it is asked for.
    function DataRecord(table, row) {
        this[sourceKey] = table;
        this[rowKey] = row;
    }

    Object.defineProperty(DataRecord.prototype, "values", {
        get: function () {
            if (!this[valuesKey])
                this[valuesKey] = this[sourceKey][sourceKey].row(this[rowKey]);
            return this[valuesKey];
        }
    });

    DataRecord.prototype.field = function (name) {
        var table = this[sourceKey];
        var column = table[columnsKey][text(name)];
        if (column === undefined)
            throw new RangeError("there is no field '" + text(name) + "' in '" + table[sourceKey].name +
                "'; its fields are: " + table.fields.join(", "));
        // A record may have fewer values than the table has fields.
        var values = this[valuesKey];
        if (values)
            return column < values.length ? values[column] : "";
        return valueOf(table, this[rowKey], column);
    };

    DataRecord.prototype.toJSON = function () {
        return {values: this.values};
    };

    function DataTable(source) {
        this.fields = source.fields();
        this.count = source.count;
        Object.defineProperty(this, sourceKey, {value: source});
        Object.defineProperty(this, aheadKey, {value: this.fields.map(function () {
            return {first: 0, values: []};
        })});
        // No Map, which the engine searches from its begin. Of two equal names the later one counts.
        var columns = Object.create(null);
        this.fields.forEach(function (name, column) {
            columns[name] = column;
        });
        Object.defineProperty(this, columnsKey, {value: columns});
    }

    DataTable.prototype.record = function (row) {
        if (!isInt32(row) || row < 0 || row >= this[sourceKey].count)
            throw new RangeError("there is no record " + show(row) + " in '" + this[sourceKey].name + "'");
        return new DataRecord(this, row);
    };

    DataTable.prototype.forEach = function (body) {
        for (var row = 0; row < this.count; ++row)
            body(new DataRecord(this, row), row);
    };

    DataTable.prototype[Symbol.iterator] = function () {
        var table = this;
        var row = 0;
        return {
            next: function () {
                if (row >= table.count)
                    return {value: undefined, done: true};
                return {value: new DataRecord(table, row++), done: false};
            }
        };
    };

    return {
        DataRecord: DataRecord,
        DataTable: DataTable,
        // The runner's table that a record is of, and its row there.
        sourceOf: function (record) {
            return record[sourceKey][sourceKey];
        },
        rowOf: function (record) {
            return record[rowKey];
        }
    };
}
