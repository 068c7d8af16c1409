// Compares where jostle and lottie-web place the layers of Lottie files, parents included.
import { spawnSync } from 'node:child_process';
import fs from 'node:fs';
import path from 'node:path';
import { parseArgs } from 'node:util';
import { angleBetween } from './geometry.mjs';
import { readLottie } from './lottie_file.mjs';
import { layerMatrices, startBrowser } from './lottie_web.mjs';
import { findProgram, lottieFilesOf, printRows } from './main_parts.mjs';
import { bareDocument, isTurnedInSpace, lineageOf } from './variants.mjs';

const usage = 'usage: check.sh --matrices [--limit PX] [--program JOSTLE] FILE|FOLDER...';

function readOptions(argv) {
  try {
    const { values, positionals } = parseArgs({
      args: argv,
      allowPositionals: true,
      options: {
        limit: { type: 'string', default: '0.01' },
        program: { type: 'string', default: process.env.JOSTLE || findProgram() },
      },
    });
    const missing = positionals.find((name) => !fs.existsSync(name));
    if (missing) throw new Error(`no file ${missing}`);
    if (positionals.length === 0) throw new Error('name files or folders');
    if (!(Number(values.limit) > 0)) throw new Error('--limit takes a number of pixels above 0');
    if (!fs.existsSync(values.program)) throw new Error('no jostle in build/release; build it, or name it with --program');
    return { limit: Number(values.limit), program: values.program, files: positionals.flatMap(lottieFilesOf) };
  } catch (error) {
    console.error(`check_players: ${error.message}\n${usage}`);
    return process.exit(2);
  }
}

/// Every whole frame that is shown, and the middles between them.
function frameList(document) {
  const first = Math.round(document.ip ?? 0);
  const last = Math.max(first, Math.ceil((document.op ?? 0) - 0.001) - 1);
  return last > first ? `${first}-${last},${first + 0.5}-${last - 0.5}` : `${first}`;
}

/// What the program says: frames, and each layer's matrices.
function ourMatrices(program, file, frames) {
  const run = spawnSync(program, ['inspect', file, '--matrices', frames], { encoding: 'utf8', maxBuffer: 2 ** 30 });
  if (run.error) throw run.error;
  if (run.status !== 0) throw new Error(run.stderr.trim().split('\n').at(-1));
  return JSON.parse(run.stdout);
}

/// Points of a layer: the corners of its source, or of a box about its origin that is as large in sight as the
/// composition, for layers without a size of their own.
function pointsOf(document, layer, [a, b, c, d]) {
  const asset = (document.assets ?? []).find((other) => other.id === layer.refId);
  const width = layer.sw ?? layer.w ?? asset?.w;
  const height = layer.sh ?? layer.h ?? asset?.h;
  if (width > 0 && height > 0) return [[0, 0], [width, 0], [0, height], [width, height]];
  const scale = Math.max(1, Math.hypot(a, b), Math.hypot(c, d));
  const [u, v] = [document.w / 2 / scale, document.h / 2 / scale];
  return [[-u, -v], [u, -v], [-u, v], [u, v]];
}

const placed = ([a, b, c, d, x, y], [u, v]) => [a * u + c * v + x, b * u + d * v + y];

/// How far apart two matrices put some points, pixels.
function distance(ours, theirs, points) {
  return Math.max(...points.map((point) => {
    const [p, q] = [placed(ours, point), placed(theirs, point)];
    return Math.hypot(p[0] - q[0], p[1] - q[1]);
  }));
}

// lottie-web takes the direction of travel from two places a hundredth of a frame apart, in 32-bit floats. What they
// are rounded by turns a slow layer by up to some tenths of a degree, this way and that.
const directionNoise = 1;

/// Degrees between the x axes of two matrices.
const turn = (ours, theirs) => angleBetween(...[ours, theirs].map((m) => (Math.atan2(m[1], m[0]) * 180) / Math.PI));

/// What is compared of a layer: its points; of one that orients itself, its anchor and its direction.
/// Null for what can't be compared.
function measureOf(document, index) {
  const [layer, ...parents] = lineageOf(document, index);
  const anchor = layer.ks?.a?.k ?? [0, 0];
  const oriented = (l) => Boolean(l.ao);
  if (isTurnedInSpace([layer, ...parents]) || parents.some(oriented)) return null;
  if (!oriented(layer)) return (ours, theirs) => distance(ours, theirs, pointsOf(document, layer, ours));
  if (typeof anchor[0] !== 'number') return null;
  return (ours, theirs) => (turn(ours, theirs) <= directionNoise ? distance(ours, theirs, [anchor]) : NaN);
}

/// The comparison of one file: how many layer-times, the worst of them, and each layer beyond the limit.
export async function compareFile(browser, program, file, limit) {
  const document = readLottie(file);
  const { frames, layers } = ourMatrices(program, file, frameList(document));
  const theirs = await layerMatrices(browser, bareDocument(document), layers.map((_, i) => i), frames);
  const result = { layers: layers.length, frames: frames.length, compared: 0, setAside: 0, worst: 0, beyond: [] };
  layers.forEach((layer, i) => {
    const measure = measureOf(document, i);
    if (!measure) {
      result.setAside += frames.length;
      return;
    }
    let worst = { px: 0 };
    let many = 0;
    frames.forEach((frame, f) => {
      const px = theirs[f][i] ? measure(layer.matrices[f], theirs[f][i]) : NaN;
      // A NaN must not pass as small.
      if (!(px <= worst.px)) worst = { px, frame };
      if (!(px <= limit)) many += 1;
      result.compared += 1;
    });
    if (!(worst.px <= result.worst)) result.worst = worst.px;
    if (many > 0) {
      result.beyond.push(`layer ${i + 1} "${layer.name}": ${many} of ${frames.length} frames beyond the limit, `
        + `the worst ${worst.frame}: ${worst.px.toFixed(4)} px`);
    }
  });
  return result;
}

async function main() {
  const options = readOptions(process.argv.slice(2));
  const browser = await startBrowser(process.env.CHROMIUM);
  const rows = [['file', 'layers', 'frames', 'layer-times', 'set aside', 'worst px', 'verdict']];
  const remarks = [];
  const total = { compared: 0, setAside: 0, worst: 0, bad: 0 };
  try {
    for (const file of options.files) {
      const name = path.basename(file);
      try {
        const r = await compareFile(browser, options.program, file, options.limit);
        rows.push([name, r.layers, r.frames, r.compared, r.setAside, r.worst.toFixed(6), r.beyond.length ? 'DIFFERS' : 'ok']);
        remarks.push(...r.beyond.map((text) => `${name}: ${text}`));
        total.compared += r.compared;
        total.setAside += r.setAside;
        if (!(r.worst <= total.worst)) total.worst = r.worst;
        if (r.beyond.length) total.bad += 1;
      } catch (error) {
        rows.push([name, '', '', '', '', '', 'FAILED']);
        remarks.push(`${name}: ${error.message.split('\n')[0]}`);
        total.bad += 1;
      }
    }
  } finally {
    await browser.close();
  }
  printRows(rows);
  remarks.forEach((text) => console.log(text));
  console.log(`${options.files.length} files, ${total.compared} layer-times compared, ${total.setAside} set aside, `
    + `worst ${total.worst.toFixed(6)} px, ${total.bad} files bad`);
  // Nothing compared proves nothing.
  process.exitCode = total.bad > 0 || total.compared === 0 ? 1 : 0;
}

if (process.argv[1] === import.meta.filename || process.argv[1]?.endsWith('/matrices.mjs')) await main();
