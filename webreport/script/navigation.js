// The history of the browser. Beside its address an entry keeps how far the details were scrolled,
// and which of list and details is shown where there is room for one of them.
(function (report) {
    'use strict';

    const pause = 150;

    /// `scroller` holds the details. `follow(entry, isNew)` is called when a person went to another
    /// address; `isNew` tells a link from the way back. An entry is `{view, top}`, `view` is 'list'
    /// or 'detail'.
    function createNavigation(window, scroller, follow) {
        const { history, location } = window;
        let timer = 0;

        function entry() {
            const view = location.hash.includes('at=') ? 'detail' : 'list';
            return { view, top: 0, ...history.state };
        }

        function replace(change, address) {
            history.replaceState({ ...entry(), ...change }, '', address);
        }

        /// Browsers refuse to note each step of a scroll.
        function noteScroll() {
            window.clearTimeout(timer);
            timer = 0;
            if (history.state && history.state.top !== scroller.scrollTop)
                replace({ top: scroller.scrollTop });
        }

        function noteScrollSoon() {
            if (!timer) timer = window.setTimeout(noteScroll, pause);
        }

        /// A `way` says what is to come on the trail: 'push' makes the present place one to come
        /// back to.
        function write(address, way) {
            if (way === 'push' && address !== location.hash) {
                noteScroll();
                history.pushState({ view: entry().view, top: 0 }, '', address);
            } else if (address !== location.hash || !history.state) replace({}, address);
        }

        /// Going from the list to the details leaves the list, with the new row, on the trail;
        /// `address` is that of the row.
        function showDetail(address) {
            replace({ view: 'list' }, address);
            history.pushState({ view: 'detail', top: 0, fromList: true }, '', address);
        }

        /// Goes back to the list, by the trail if that is where the details came from. Returns
        /// whether the page is to draw that by itself.
        function showList() {
            if (entry().view === 'list') return true;
            if (entry().fromList) {
                history.back();
                return false;
            }
            replace({ view: 'list' });
            return true;
        }

        window.addEventListener('popstate', () => {
            window.clearTimeout(timer);
            timer = 0;
            const isNew = !history.state;
            if (isNew) replace({ view: 'detail' });
            follow(entry(), isNew);
        });
        // A link notes where its page was left.
        window.addEventListener('click', noteScroll, true);
        scroller.addEventListener('scroll', noteScrollSoon, { passive: true });

        return { entry, write, showDetail, showList };
    }

    report.createNavigation = createNavigation;
})((globalThis.morvexReport = globalThis.morvexReport || {}));
