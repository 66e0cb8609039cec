// Numbers, times and locations as a person reads them.
(function (report) {
    'use strict';

    const numbers = new Intl.NumberFormat('en');
    const pad = (number) => String(number).padStart(2, '0');

    function count(number) {
        return numbers.format(number);
    }

    function counted(number, one, many) {
        return count(number) + ' ' + (number === 1 ? one : many);
    }

    /// Milliseconds; the data may know whole seconds only, so that less than one is no zero.
    function duration(milliseconds) {
        if (milliseconds < 1000)
            return milliseconds > 0 ? Math.round(milliseconds) + ' ms' : '< 1 s';
        const seconds = Math.round(milliseconds / 1000);
        if (seconds < 60) return seconds + ' s';
        if (seconds < 3600) return Math.floor(seconds / 60) + ' min ' + pad(seconds % 60) + ' s';
        return Math.floor(seconds / 3600) + ' h ' + pad(Math.floor(seconds / 60) % 60) + ' min';
    }

    /// The clock of the machine that ran the tests, not of the reader: log files beside the report
    /// show that one.
    function dateTime(iso) {
        return (iso || '').replace('T', ' ').replace(/(Z|[+-]\d\d:\d\d)$/, '');
    }

    function clock(iso) {
        return dateTime(iso).slice(11);
    }

    /// The offset from UTC, and the same moment by the clock of the reader. Empty for a time that
    /// can't be read.
    function zoneText(iso) {
        const moment = new Date(iso);
        const zone = /(Z|[+-]\d\d:\d\d)$/.exec(iso || '');
        if (!zone || Number.isNaN(moment.getTime())) return '';
        const offset = zone[1] === 'Z' ? 'UTC' : 'UTC' + zone[1];
        const date = [moment.getFullYear(), moment.getMonth() + 1, moment.getDate()];
        const clockParts = [moment.getHours(), moment.getMinutes(), moment.getSeconds()];
        const here = date.map(pad).join('-') + ' ' + clockParts.map(pad).join(':');
        return offset + ', as on the machine that ran the tests; by your clock ' + here;
    }

    /// What is no valid escape stays as it is.
    function decoded(path) {
        try {
            return decodeURIComponent(path);
        } catch {
            return path;
        }
    }

    function escaped(text, characters) {
        return text.replace(
            characters,
            (mark) => '%' + mark.charCodeAt(0).toString(16).toUpperCase(),
        );
    }

    /// For use in the address: without what separates the parts of a place there, and without what
    /// programs take for the end of a link in a text.
    function encoded(text) {
        const whole = text.replace(
            /[\uD800-\uDBFF](?![\uDC00-\uDFFF])|(?<![\uD800-\uDBFF])[\uDC00-\uDFFF]/g,
            '\uFFFD',
        );
        return escaped(encodeURIComponent(whole), /[!~'()*]/g);
    }

    function splitLocation(uri) {
        const match = /^([a-z][a-z0-9+.-]*):\/*(.*)$/i.exec(uri || '');
        return match
            ? { scheme: match[1].toLowerCase(), path: match[2] }
            : { scheme: '', path: uri || '' };
    }

    /// A location as a path, with the line when it is known.
    function locationText(uri, lineNo) {
        const { scheme, path } = splitLocation(uri);
        const text = (scheme === 'file' ? '/' : '') + decoded(path);
        return lineNo > 0 ? text + ':' + lineNo : text;
    }

    /// The location of a file named by its path, as call stacks name it; `base` is the location of
    /// the suite. What is no absolute path is taken for a location.
    function locationOfPath(path, base) {
        if (!path.startsWith('/')) return path;
        const suite = locationText(base) + '/';
        const segments = (text) => text.split('/').map(encoded).join('/');
        return suite.startsWith('/') && suite !== '/' && path.startsWith(suite)
            ? 'x-testsuite:/' + segments(path.slice(suite.length))
            : 'file://' + segments(path);
    }

    /// What a page beside the data can link to: files of the report, and on a page opened from a
    /// file also those of the suite, when `base` (a file URL) says where that was. Null otherwise.
    /// The result never names another scheme, whatever the location holds.
    function locationLink(uri, base) {
        const { scheme, path } = splitLocation(uri);
        if (!path) return null;
        if (scheme === 'x-results') return './' + path;
        if (globalThis.location && globalThis.location.protocol !== 'file:') return null;
        if (scheme === 'file') return 'file:///' + path;
        if (scheme === 'x-testsuite' && splitLocation(base).scheme === 'file')
            return base.replace(/\/$/, '') + '/' + path;
        return null;
    }

    report.format = {
        count,
        counted,
        duration,
        dateTime,
        clock,
        zoneText,
        decoded,
        encoded,
        escaped,
        locationText,
        locationOfPath,
        locationLink,
    };
})((globalThis.morvexReport = globalThis.morvexReport || {}));
