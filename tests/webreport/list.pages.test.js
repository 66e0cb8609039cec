'use strict';

const assert = require('node:assert/strict');
const { test } = require('node:test');
const tools = require('./browser');
const { RunBuilder } = require('./testdata');

const { focused, heading, row, rowNames, selected, texts } = tools;

tools.describePages('The list', ({ onRuns, onShop }) => {
    test('The tree opens and closes by clicks and by keys, and the details follow', () =>
        onShop('', async (page) => {
            assert.equal(await heading(page), 'suite_shop');
            await row(page, 'tst_catalogue').locator('[data-toggle]').click();
            await row(page, 'Prices').locator('.name').click();
            assert.deepEqual([await focused(page), await heading(page)], ['tree', 'Prices']);
            await page.keyboard.press('ArrowRight');
            await page.keyboard.press('ArrowRight');
            assert.match(await heading(page), /Object property comparison/);
            assert.equal(
                await page.locator('#tree').getAttribute('aria-activedescendant'),
                await page.locator('.row[aria-selected="true"]').getAttribute('id'),
            );
            await page.keyboard.press('ArrowLeft');
            await page.keyboard.press('ArrowLeft');
            assert.equal(await row(page, 'Prices').getAttribute('aria-expanded'), 'false');
            assert.ok(!(await rowNames(page)).some((name) => name.includes('Object property')));
        }));

    test('The search finds results in parts that are closed, while one types', () =>
        onShop('', async (page) => {
            await page.keyboard.press('/');
            await page.keyboard.type('pays -cancelled');
            const found = ['suite_shop', 'tst_orders', 'Orders', 'An order is placed'];
            assert.deepEqual(await rowNames(page), [...found, 'When the customer pays']);
            assert.match(await page.locator('#listNote').textContent(), /1 of 25 test cases/);
            await page.keyboard.type(' nowhere');
            assert.match(await page.locator('#listEmpty').innerText(), /Nothing matches/);
            await page.locator('#listEmpty button').click();
            assert.equal(await focused(page), 'tree');
            assert.ok((await rowNames(page)).length > 10);
            await page.locator('#search').fill('lamp table');
            await row(page, "Table Comparison of ':Basket_Table' failed").click();
            assert.deepEqual(await texts(page, '#tree mark.found'), ['Table', 'Table']);
            const inDetail = new Set(await texts(page, '#detail mark.found'));
            assert.deepEqual([...inDetail], ['Table', 'Lamp']);
            await page.locator('#search').press('Escape');
            assert.ok((await rowNames(page)).length > 10);
            assert.deepEqual(await texts(page, 'mark.found'), []);
        }));

    test('From a row that the filters hide keys go on in the order of the list', () =>
        onShop('#run=3&at=tst_catalogue/Prices/!0', async (page) => {
            await page.keyboard.press('s');
            await page.locator('#search').fill('-catalogue');
            const names = await rowNames(page);
            assert.match(await page.locator('#hiddenNote').innerText(), /Hidden in the list/);
            await page.locator('#tree').focus();
            await page.keyboard.press('ArrowDown');
            assert.equal(await selected(page), names[names.indexOf('tst_import') + 1]);
            assert.equal(await page.locator('#hiddenNote').isVisible(), false);
        }));

    test('The start page has the latest run of each suite, and keys stay within a suite', async () => {
        const run = (name, start, body) =>
            new RunBuilder(name, start).testCase('tst_' + name, body).finish();
        const runs = [
            run('red', '2026-01-01T00:00:00Z', (one) => one.pass('x')),
            run('red', '2026-01-02T00:00:00Z', (one) => one.fail('Broken')),
            run('green', '2026-01-02T01:00:00Z', (one) => one.pass('x')),
        ];
        await onRuns(runs, '', async (page) => {
            assert.deepEqual(await rowNames(page), ['2 suites', 'red', 'green']);
            assert.equal(await page.title(), '1 failed – 2 suites');
            assert.match(await page.locator('#favicon').getAttribute('href'), /failed/);
            await page.locator('.cause summary').click();
            await page.locator('.cause .testlink').click();
            await tools.eventually(() => heading(page), 'tst_red');
            await page.keyboard.press('[');
            assert.equal(await page.locator('#runPicker').inputValue(), '0');
            assert.equal(await heading(page), 'tst_red');
            await page.keyboard.press('a');
            assert.equal(await heading(page), '2 suites');
            const shown = async () =>
                (await page.locator('.runs').last().innerText()).match(/Run/g);
            assert.equal((await shown()).length, 4);
            await page.getByLabel('Runs of').selectOption('1');
            assert.equal((await shown()).length, 2);
        });
    });

    test('Rows are links that open in a tab of their own', () =>
        onShop('', async (page, context) => {
            const opened = context.waitForEvent('page');
            await row(page, 'tst_import')
                .locator('.name')
                .click({ modifiers: ['Control'] });
            const other = await opened;
            await tools.eventually(() => heading(other), 'tst_import');
            assert.equal(await heading(page), 'suite_shop');
        }));

    test('The help describes the keys and gives the focus back', () =>
        onShop('', async (page) => {
            await page.keyboard.press('?');
            await page.getByRole('dialog').getByText('failures only').waitFor();
            await page.keyboard.press('j');
            assert.equal(await heading(page), 'suite_shop');
            await page.keyboard.press('Escape');
            await page.keyboard.press('j');
            assert.equal(await heading(page), 'Random order of test cases');
            for (const modifier of ['Control', 'Alt', 'Meta'])
                await page.keyboard.press(modifier + '+ArrowDown');
            assert.equal(await heading(page), 'Random order of test cases');
        }));

    test('20,000 results cost no more elements than twenty', async () => {
        const run = new RunBuilder('suite_big');
        for (let number = 0; number < 100; ++number)
            run.testCase('tst_' + number, () => {
                for (let check = 0; check < 200; ++check) run.pass('Check ' + number + '-' + check);
            });
        await onRuns([run.finish()], '', async (page) => {
            await page.keyboard.press('e');
            const elements = () => page.evaluate(() => document.querySelectorAll('#tree *').length);
            assert.ok((await elements()) < 800);
            await page.keyboard.press('End');
            assert.equal(await heading(page), 'Check 99-199');
            assert.ok(await row(page, 'Check 99-199').isVisible());
            await page
                .locator('#tree')
                .evaluate((tree) => (tree.scrollTop = tree.scrollHeight / 2));
            await tools.eventually(async () => /Check 49-/.test(await rowNames(page)), true);
            await page.locator('#search').fill('check');
            assert.match(await page.locator('#listNote').textContent(), /20,000 hits/);
            assert.ok((await elements()) < 800);
        });
    });
});
