// Copies of a document that show one layer alone, as the player has it or as the outlines are read.

const painted = new Set(['fl', 'gf', 'st', 'gs']);
const changing = new Set(['tm', 'rp', 'mm', 'rd', 'op', 'pb', 'zz', 'tw']);
const outlines = new Set(['sh', 'rc', 'el', 'sr']);
const fill = (rule) => ({ ty: 'fl', c: { a: 0, k: [0, 0, 0, 1] }, o: { a: 0, k: 100 }, r: rule });

// Expressions are no part of what is compared: some name layers that are left out.
function withoutExpressions(value) {
  if (Array.isArray(value)) return value.map(withoutExpressions);
  if (value === null || typeof value !== 'object') return value;
  return Object.fromEntries(Object.entries(value)
    .filter(([key, member]) => !(key === 'x' && typeof member === 'string' && 'k' in value))
    .map(([key, member]) => [key, withoutExpressions(member)]));
}

/// The document with one layer and, as nulls, what it hangs from: opaque, for all frames, without mattes, effects,
/// styles, blending and expressions.
export function alone(document, index) {
  const { layers, ...rest } = document;
  const op = Math.max(rest.op ?? 1, 1);
  const shown = withoutExpressions(layers[index]);
  for (const member of ['tt', 'td', 'tp', 'ef', 'sy', 'bm']) delete shown[member];
  Object.assign(shown, { hd: false, ip: 0, op, ks: { ...shown.ks, o: { a: 0, k: 100 } } });
  const kept = [shown];
  const seen = new Set([index]);
  for (let { parent } = shown; parent !== undefined;) {
    const place = layers.findIndex((layer) => layer.ind === parent);
    if (place < 0 || seen.has(place)) break;
    seen.add(place);
    const { ind, ks, ao, st, sr } = layers[place];
    kept.push(withoutExpressions({ ty: 3, ind, ks, ao, st, sr, parent: layers[place].parent, ip: 0, op }));
    parent = layers[place].parent;
  }
  return { ...rest, ip: 0, op, layers: kept };
}

/// What in a layer is not read, or read in another way than it is drawn.
export function notRead(layer) {
  const found = new Set();
  const walk = (elements) => {
    for (const element of elements ?? []) {
      if (element.hd) found.add('hidden elements');
      if (element.ty === 'st' || element.ty === 'gs') found.add('strokes');
      if (element.ty === 'gf') found.add('gradients');
      if (changing.has(element.ty)) found.add(`modifier ${element.ty}`);
      if (element.ty === 'tr' && (element.sk?.k || element.sk?.a)) found.add('skew of groups');
      if (element.ty === 'tr' && element.r?.k && !element.r.a) found.add('turned groups');
      walk(element.it);
    }
  };
  walk(layer.shapes);
  for (const mask of layer.masksProperties ?? []) {
    if (mask.mode !== 'a') found.add(`mask mode ${mask.mode}`);
    if (mask.inv) found.add('inverted masks');
    if (mask.f || mask.x?.k || mask.x?.a) found.add('feather or expansion');
    if (mask.o?.a || (mask.o?.k ?? 100) !== 100) found.add('mask opacity');
  }
  if (layer.ks?.sk?.k || layer.ks?.sk?.a) found.add('skew of the layer');
  if (layer.t?.a?.length) found.add('text animators');
  if (layer.t?.d?.k?.some?.(({ s }) => s?.sc && s.sw)) found.add('strokes');
  if (JSON.stringify(withoutExpressions(layer)) !== JSON.stringify(layer)) found.add('expressions');
  return [...found];
}

function stripped(elements) {
  return (elements ?? [])
    .filter((element) => !painted.has(element.ty) && !changing.has(element.ty))
    .map((element) => {
      const copy = { ...element, hd: false };
      if (copy.it) copy.it = stripped(copy.it);
      if (copy.ty === 'tr') copy.o = { a: 0, k: 100 };
      return copy;
    });
}

// A fill goes below the outlines of its list, and in a group above the group's transform.
function filledByGroup(elements) {
  const inner = elements.map((element) => (element.it ? { ...element, it: filledByGroup(element.it) } : element));
  if (!inner.some((element) => outlines.has(element.ty))) return inner;
  const transform = inner.filter((element) => element.ty === 'tr');
  return [...inner.filter((element) => element.ty !== 'tr'), fill(2), ...transform];
}

/// The same, but all outlines filled and nothing else: by the even-odd rule, by the non-zero rule, and group by group.
/// Masks become outlines of a shape layer. Text is without its strokes.
export function asRead(document, index) {
  const base = alone(document, index);
  const [layer] = base.layers;
  const masks = layer.masksProperties ?? [];
  let elements = stripped(layer.shapes);
  if (masks.length > 0) {
    elements = masks.map((mask) => ({ ty: 'sh', ks: mask.pt }));
  } else if (layer.ty !== 4) {
    for (const { s } of layer.t?.d?.k ?? []) {
      delete s?.sc;
      delete s?.sw;
    }
    return [base];
  }
  const variant = (shapes) => {
    const copy = structuredClone(base);
    const [changed] = copy.layers;
    for (const member of ['masksProperties', 'hasMask', 'refId', 't', 'sw', 'sh', 'sc']) delete changed[member];
    Object.assign(changed, { ty: 4, shapes: structuredClone(shapes) });
    return copy;
  };
  return [variant([...elements, fill(2)]), variant([...elements, fill(1)]), variant(filledByGroup(elements))];
}
