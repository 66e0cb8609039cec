// Lists of which a part is shown until more is asked for.
(function (report) {
    'use strict';

    const { append, element, button } = report.dom;
    const { count } = report.format;

    function fill(control, left, step, what) {
        control.hidden = left === 0;
        control.textContent =
            'Show ' + count(Math.min(step, left)) + ' ' + what + ' of ' + count(left);
    }

    /// The first `step` items. `build` makes one element of an item.
    function growingList(items, build, step, properties) {
        const list = element('ul', properties);
        const more = button('', () => grow(), { class: 'more' });
        function grow() {
            const start = list.childElementCount;
            append(
                list,
                items.slice(start, start + step).map((item) => element('li', null, build(item))),
            );
            fill(more, items.length - list.childElementCount, step, 'more');
        }
        grow();
        return [list, more];
    }

    /// The `step` items round the one at `middle`, put into `host`. `labels` says what is
    /// before them and what after. Returns `{before, after, note}`, to be placed by the caller.
    function windowList(host, items, middle, build, step, labels) {
        let from = Math.max(0, Math.min(middle - Math.floor(step / 2), items.length - step));
        let to = Math.min(items.length, from + step);
        const note = element('p', { class: 'note' });
        const before = button('', () => show(Math.max(0, from - step), to), { class: 'more' });
        const after = button('', () => show(from, Math.min(items.length, to + step)), {
            class: 'more',
        });
        function show(start, end) {
            host.prepend(...items.slice(start, from).map(build));
            host.append(...items.slice(to, end).map(build));
            [from, to] = [start, end];
            fill(before, from, step, labels.before);
            fill(after, items.length - to, step, labels.after);
            note.hidden = to - from === items.length;
            note.textContent = count(to - from) + ' of ' + count(items.length) + ' runs are shown.';
        }
        host.append(...items.slice(from, to).map(build));
        show(from, to);
        return { before, after, note };
    }

    report.growingList = growingList;
    report.windowList = windowList;
})((globalThis.morvexReport = globalThis.morvexReport || {}));
