'use strict';

const assert = require('node:assert/strict');
const fs = require('node:fs');
const { after, test } = require('node:test');
const tools = require('./browser');
const { Workshop, missing } = require('./runner');

const axe = tools.optional('axe-core') && fs.readFileSync(require.resolve('axe-core'), 'utf8');
const noAxe = axe ? false : 'axe-core is missing, run "npm ci" in tests/webreport';
const looks = [{ colorScheme: 'light' }, { colorScheme: 'dark' }, { forcedColors: 'active' }];

tools.describePages('Accessibility', ({ onPage, shop }) => {
    const workshop = new Workshop();
    after(() => workshop.remove());

    function reportWithCoverage() {
        const script = 'application.start("inventory"); find("name").type("x");';
        workshop.suite('suite_ui', { tst_ui: script });
        workshop.run('suite_ui', 1, '--coverage');
        return tools.fileAddress(workshop.path('report'));
    }

    async function followCoverage(page) {
        const link = page.locator('.totals').getByRole('link', { name: 'UI coverage' });
        await page.goto(await link.evaluate(({ href }) => href));
        await page.getByRole('heading', { name: 'UI coverage' }).waitFor();
    }

    for (const [name, address, skip = noAxe, follow = () => {}] of [
        ['The start page', () => tools.fileAddress(shop())],
        ['A failed test case', () => tools.fileAddress(shop(), '#run=3&at=tst_catalogue')],
        ['A failure', () => tools.fileAddress(shop(), '#run=3&at=tst_catalogue/Prices/!1')],
        ['The coverage page', reportWithCoverage, missing || noAxe, followCoverage],
    ])
        test(name + ' can be read by all, in each choice of colours', { skip }, async () => {
            const to = address();
            for (const look of looks)
                await onPage(
                    to,
                    async (page) => {
                        await follow(page);
                        await page.evaluate(axe);
                        const { violations } = await page.evaluate(() => globalThis.axe.run());
                        const found = violations.map(({ id, nodes }) => [id, nodes[0].html]);
                        assert.deepEqual(found, [], JSON.stringify(look));
                    },
                    look,
                );
        });
});
