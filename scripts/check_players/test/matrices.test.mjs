// The comparison of matrices on a document made by hand, with a stand-in for the program that says what it is told.
import assert from 'node:assert/strict';
import fs from 'node:fs';
import os from 'node:os';
import path from 'node:path';
import { after, before, test } from 'node:test';
import { startBrowser } from '../lottie_web.mjs';
import { compareFile } from '../matrices.mjs';

let browser;
let folder;
before(async () => {
  browser = await startBrowser(process.env.CHROMIUM ?? '/usr/bin/chromium');
  folder = fs.mkdtempSync(path.join(os.tmpdir(), 'matrices-'));
});
after(async () => {
  await browser.close();
  fs.rmSync(folder, { recursive: true });
});

/// A still solid, a child of it that is twice as large, one turned out of the plane, and one along its path. Frames 0,
/// 1 and the middle between.
const still = (k) => ({ a: 0, k });
const moving = { a: 1, k: [{ t: 0, s: [0, 0, 0], o: { x: 0, y: 0 }, i: { x: 1, y: 1 } }, { t: 10, s: [30, 40, 0] }] };
const document = {
  v: '5.7.4', fr: 30, ip: 0, op: 2, w: 300, h: 200,
  layers: [
    { ty: 1, ind: 1, sw: 80, sh: 20, ip: 1, op: 2, ks: { p: still([100, 50, 0]) } },
    { ty: 4, ind: 2, parent: 1, hd: true, shapes: [], ks: { p: { ...still([10, 0, 0]), x: 'var $bm_rt = [0, 0];' }, s: still([200, 200, 100]) } },
    { ty: 4, ind: 3, ddd: 1, shapes: [], ks: { p: still([0, 0, 0]), rx: still(30), ry: still(0), rz: still(0), or: still([0, 0, 0]) } },
    { ty: 4, ind: 4, ao: 1, shapes: [], ks: { p: moving } },
  ],
};
const along = (frame) => [0.6, 0.8, -0.8, 0.6, 3 * frame, 4 * frame];

async function compare(spoil = () => {}) {
  const frames = [0, 1, 0.5];
  const layers = [() => [1, 0, 0, 1, 100, 50], () => [2, 0, 0, 2, 110, 50], () => [1, 0, 0, 1, 0, 0], along]
    .map((matrix, i) => ({ number: i + 1, name: '', matrices: frames.map(matrix) }));
  spoil(layers);
  const [file, said, program] = ['in.json', 'said.json', 'program'].map((name) => path.join(folder, name));
  fs.writeFileSync(file, JSON.stringify(document));
  fs.writeFileSync(said, JSON.stringify({ frames, layers }));
  fs.writeFileSync(program, `#!/bin/sh\ncat '${said}'\n`, { mode: 0o755 });
  return compareFile(browser, program, file, 0.01);
}

test('the right matrices pass, whatever hides the layers', async () => {
  const { compared, setAside, worst, beyond } = await compare();
  assert.deepEqual(beyond, []);
  assert.equal(compared, 9);
  assert.equal(setAside, 3);
  assert.ok(worst < 1e-4);
});

const faults = {
  'a place a fiftieth of a pixel off': (layers) => { layers[0].matrices[1][4] += 0.02; },
  'a scale that is wrong in sight': (layers) => { layers[1].matrices[0][3] = 2.001; },
  'a turn': (layers) => { layers[0].matrices[2] = [0.9998, 0.0175, -0.0175, 0.9998, 100, 50]; },
  'a direction two degrees off': (layers) => { layers[3].matrices[2] = [0.5717, 0.8205, -0.8205, 0.5717, 1.5, 2]; },
  'a number that is none': (layers) => { layers[1].matrices[1][0] = null; layers[1].matrices[1][5] = NaN; },
};
for (const [name, spoil] of Object.entries(faults)) {
  test(`notices ${name}`, async () => assert.equal((await compare(spoil)).beyond.length, 1));
}
