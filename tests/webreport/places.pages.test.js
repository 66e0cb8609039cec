'use strict';

const assert = require('node:assert/strict');
const { test } = require('node:test');
const tools = require('./browser');

const { block, eventually, focused, heading, row, rowNames, selected } = tools;
const pictureFailure = '#run=3&at=tst_catalogue/Prices/!2';
const narrow = { viewport: { width: 390, height: 800 } };
const low = { viewport: { width: 1300, height: 400 } };
const scrollTop = (page) => page.locator('#detail').evaluate((one) => one.scrollTop);

tools.describePages('Places', ({ onShop }) => {
    test('An address brings a colleague to the same place with the same filters', () =>
        onShop('', async (page, context) => {
            await page.locator('#filters [data-key="skipped"]').click({ modifiers: ['Shift'] });
            await page.locator('#filters [data-key="fail"]').click();
            await page.locator('#search').fill('basket "comparison of"');
            await page.locator('#slowest').click();
            await row(page, 'Prices').click();
            await page.keyboard.press('n');
            const state = async (one) => [
                await rowNames(one), await heading(one), await one.locator('#search').inputValue(),
                await one.locator('#filters [data-key="skipped"]').textContent(),
                await one.locator('#slowest').getAttribute('aria-pressed'),
            ];
            const other = await context.newPage();
            await other.goto(page.url());
            assert.deepEqual(await state(other), await state(page));
        }));

    test('The way past the filters to the list keeps run, place and filters', () =>
        onShop('#run=2&at=tst_import&tests=-skipped', async (page) => {
            const before = page.url();
            await page.locator('#skip').focus();
            await page.keyboard.press('Enter');
            assert.deepEqual([await focused(page), page.url()], ['tree', before]);
        }));

    test('What an address names and the report does not hold is said', () =>
        onShop('#run=2026-03-02T22:00:00Z&at=tst_import', async (page) => {
            const notices = () => page.locator('#notices').innerText();
            assert.equal(await page.locator('#runPicker').inputValue(), '1');
            assert.equal(await notices(), '');
            for (const [hash, said] of [
                ['#run=2020-01-01T00:00:00Z&at=tst_import', /run of the address/],
                ['#run=99', /run of the address/],
                ['#run=2&at=tst_gone/Form', /place of the address/],
            ]) {
                await page.evaluate((to) => (location.hash = to), hash);
                await eventually(async () => said.test(await notices()), true);
            }
            await page.locator('#notices .close').click();
            assert.equal(await notices(), '');
        }));

    test('The run can be chosen by the list of runs', () =>
        onShop('#run=3&at=tst_catalogue', async (page) => {
            const picker = page.locator('#runPicker');
            await picker.focus();
            const labels = await picker.locator('option').allTextContents();
            const failed = labels.map((label) => label.replace(/.* · /, ''));
            assert.deepEqual(failed, ['3 failed', '3 failed', '1 failed']);
            await picker.selectOption('1');
            const shown = [await focused(page), await heading(page)];
            assert.deepEqual(shown, ['runPicker', 'tst_catalogue']);
        }));

    test('Following a link and going back keeps what was opened, and how far one had read', () =>
        onShop(
            '#run=3',
            async (page) => {
                await row(page, 'tst_report_01').locator('[data-toggle]').click();
                const isOpen = () => row(page, 'tst_report_01').getAttribute('aria-expanded');
                const link = block(page, 'Slowest').locator('a').last();
                await link.scrollIntoViewIfNeeded();
                const read = await scrollTop(page);
                assert.ok(read > 0);
                await link.click();
                await eventually(async () => (await heading(page)) !== 'suite_shop', true);
                const place = [await focused(page), await scrollTop(page), await isOpen()];
                assert.deepEqual(place, ['detail', 0, 'true']);
                await page.goBack();
                await eventually(() => heading(page), 'suite_shop');
                await eventually(() => scrollTop(page), read);
                assert.equal(await isOpen(), 'true');
            },
            low,
        ));

    test('Reloading keeps how far one had read below pictures', () =>
        onShop(
            pictureFailure,
            async (page) => {
                await page.locator('.stage').waitFor();
                await page.locator('#detail').evaluate((one) => (one.scrollTop = 1e6));
                const read = await scrollTop(page);
                assert.ok(read > 200);
                await eventually(() => page.evaluate(() => history.state.top), read);
                await page.reload();
                await eventually(() => scrollTop(page), read);
            },
            low,
        ));

    test('On a narrow screen keys that scroll stay with the details', async () => {
        const ways = [
            ['#run=3', (page) => row(page, 'tst_catalogue').click()],
            ['#run=3', (page) => page.keyboard.press('n')],
            ['#run=3&at=tst_catalogue', () => {}],
        ];
        for (const [hash, open] of ways)
            await onShop(
                hash,
                async (page) => {
                    await open(page);
                    assert.equal(await focused(page), 'detail');
                    const shown = await heading(page);
                    for (const blur of [false, true]) {
                        if (blur) await page.evaluate(() => document.activeElement.blur());
                        for (const key of ['PageDown', 'ArrowDown', 'End', 'Home'])
                            await page.keyboard.press(key);
                        assert.equal(await heading(page), shown);
                    }
                    await page.keyboard.press('Escape');
                    await eventually(() => focused(page), 'tree');
                },
                narrow,
            );
    });

    test('On a narrow screen details take the place of the list, and Back gives it back', () =>
        onShop(
            '#run=3',
            async (page) => {
                const visible = async () => [
                    await page.locator('#list').isVisible(),
                    await page.locator('#detail').isVisible(),
                ];
                assert.deepEqual(await visible(), [true, false]);
                assert.equal(await page.locator('.chips').first().isVisible(), false);
                await tools.use(page, 'Filters');
                assert.equal(await page.locator('.chips').first().isVisible(), true);
                for (const back of [
                    () => page.goBack(),
                    () => page.getByRole('button', { name: 'Results', exact: true }).click(),
                    () => page.keyboard.press('Escape'),
                ]) {
                    await row(page, 'tst_catalogue').click();
                    assert.deepEqual(await visible(), [false, true]);
                    await back();
                    await eventually(visible, [true, false]);
                    assert.equal(await selected(page), 'tst_catalogue');
                }
                await page.locator('#tree').focus();
                await page.keyboard.press('n');
                await page.reload();
                assert.deepEqual(await visible(), [false, true]);
                assert.match(await heading(page), /Object property/);
                const isWithin = () => document.documentElement.scrollWidth <= window.innerWidth;
                assert.ok(await page.evaluate(isWithin));
            },
            narrow,
        ));
});
