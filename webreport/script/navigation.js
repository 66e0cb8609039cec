// The history of the browser. Beside its address an entry keeps how far the details were scrolled,
// and which of list and details is shown where there is room for one of them.
(function (report) {
    'use strict';

    const pause = 150;

    class Navigation {
        /// `scroller` holds the details. `follow(entry, isNew)` is called when a person went to
        /// another address; `isNew` is true for a link, false for the way back. An entry is
        /// `{view, top}`, `view` is 'list' or 'detail'.
        constructor(window, scroller, follow) {
            this.window = window;
            this.history = window.history;
            this.location = window.location;
            this.scroller = scroller;
            this.follow = follow;
            this.timer = 0;
            window.addEventListener('popstate', () => this.arrive());
            // A link notes where its page was left.
            window.addEventListener('click', () => this.noteScroll(), true);
            scroller.addEventListener('scroll', () => this.noteScrollSoon(), { passive: true });
        }

        entry() {
            const view = this.location.hash.includes('at=') ? 'detail' : 'list';
            return { view, top: 0, ...this.history.state };
        }

        replace(change, address) {
            this.history.replaceState({ ...this.entry(), ...change }, '', address);
        }

        arrive() {
            this.stopTimer();
            const isNew = !this.history.state;
            if (isNew) this.replace({ view: 'detail' });
            this.follow(this.entry(), isNew);
        }

        stopTimer() {
            this.window.clearTimeout(this.timer);
            this.timer = 0;
        }

        noteScroll() {
            this.stopTimer();
            const { state } = this.history;
            if (state && state.top !== this.scroller.scrollTop)
                this.replace({ top: this.scroller.scrollTop });
        }

        /// Browsers refuse to note each step of a scroll.
        noteScrollSoon() {
            if (!this.timer) this.timer = this.window.setTimeout(() => this.noteScroll(), pause);
        }

        /// A `way` says what is to come on the trail: 'push' makes the present place one to come
        /// back to.
        write(address, way) {
            const isOther = address !== this.location.hash;
            if (way === 'push' && isOther) {
                this.noteScroll();
                this.history.pushState({ view: this.entry().view, top: 0 }, '', address);
            } else if (isOther || !this.history.state) this.replace({}, address);
        }

        /// Going from the list to the details leaves the list, with the new row, on the trail;
        /// `address` is that of the row.
        showDetail(address) {
            this.replace({ view: 'list' }, address);
            this.history.pushState({ view: 'detail', top: 0, fromList: true }, '', address);
        }

        /// Goes back to the list, by the trail if that is where the details came from. Returns
        /// whether the page is to draw that by itself.
        showList() {
            if (this.entry().view === 'list') return true;
            if (this.entry().fromList) {
                this.history.back();
                return false;
            }
            this.replace({ view: 'list' });
            return true;
        }
    }

    report.Navigation = Navigation;
})((globalThis.morvexReport = globalThis.morvexReport || {}));
