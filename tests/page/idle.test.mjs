// Cards that would show nothing say so in a line.
import assert from 'node:assert/strict';
import { test } from 'node:test';
import { show } from './harness.mjs';

const curves = [0, 1, 2, 3]
    .map((i) => `scene_curve.val_${i}-0 = 0, ${[5, 5, 7, 9][i]}, 9\n`)
    .join('');
const snapshot = (n) => `dev_idx = 0, path_idx = 0
=== cfg.te ===
TE enable = 0
TE Curve[60]:
0, 5, 9
=== cfg.gamma ===
GMA curve:
0, ${n}, 9
=== cfg.pta ===
PTA Curve:
0, 4, 9
=== cfg.hte ===
HTE curve:
0, 0, 0
[PTA]
enable = 1
scene_curve_cnt = 3
${curves}`;

test('what is disabled, all equal or constant is a line, and equal curves are one', async (t) => {
    const page = await show(t, { 'one.txt': snapshot(1) });
    const line = async (title) => {
        const card = page.locator(`.cards [data-title="${title}"]`);
        await card.scrollIntoViewIfNeeded();
        await card.locator('.idle button, canvas').first().waitFor();
        return card.locator('.idle').evaluate((one) => one.firstChild?.data ?? '');
    };
    assert.equal(await line('Tone enhancement'), 'Disabled. ');
    assert.equal(await line('HDR tone enhancement'), 'All 0. ');
    assert.equal(await line('Post tone'), '');
    assert.equal(await line('Post tone: scene curves'), '');
    const legend = page.locator('[data-title="Post tone: scene curves"] .legend > :visible');
    assert.deepEqual(await legend.allInnerTexts(), ['0 = 1', '2', 'not in use: 3']);
    await page.getByRole('button', { name: 'show Tone enhancement' }).click();
    await page.locator('[data-title="Tone enhancement"] canvas').waitFor();

    const series = await show(t, { 'all.txt': [1, 2, 3].map(snapshot).join('') });
    await series.locator('[data-title="Gamma"] canvas').waitFor();
    await series.locator('.idle', { hasText: 'Never changes here.' }).first().waitFor();
    const idle = await series.$$eval('.cards .card', (all) =>
        all.filter((one) => one.querySelector('.idle button')).map((one) => one.dataset.title),
    );
    assert.deepEqual(idle, [
        'Tone enhancement',
        'HDR tone enhancement',
        'Post tone',
        'Post tone: scene curves',
    ]);
});
