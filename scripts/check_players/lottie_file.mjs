// Reading Lottie files: plain JSON, or the first animation of a .lottie archive.
import fs from 'node:fs';
import path from 'node:path';
import zlib from 'node:zlib';

/// The members of a ZIP archive by name, unpacked. Stored and deflated members only.
function unzip(bytes) {
  const end = bytes.lastIndexOf(Buffer.from('PK\x05\x06', 'latin1'));
  if (end < 0) throw new Error('not a whole archive: its directory is missing');
  const members = new Map();
  let at = bytes.readUInt32LE(end + 16);
  for (let left = bytes.readUInt16LE(end + 10); left > 0; left -= 1) {
    const method = bytes.readUInt16LE(at + 10);
    const packedSize = bytes.readUInt32LE(at + 20);
    const nameLength = bytes.readUInt16LE(at + 28);
    const local = bytes.readUInt32LE(at + 42);
    const name = bytes.toString('utf8', at + 46, at + 46 + nameLength);
    // The local header has an extra field of its own length.
    const data = local + 30 + bytes.readUInt16LE(local + 26) + bytes.readUInt16LE(local + 28);
    const packed = bytes.subarray(data, data + packedSize);
    if (method === 0) members.set(name, packed);
    else if (method === 8) members.set(name, zlib.inflateRawSync(packed));
    at += 46 + nameLength + bytes.readUInt16LE(at + 30) + bytes.readUInt16LE(at + 32);
  }
  return members;
}

const mediaTypes = { png: 'image/png', jpg: 'image/jpeg', jpeg: 'image/jpeg', webp: 'image/webp', svg: 'image/svg+xml' };

/// Puts the pictures that `find(folder, name)` has bytes for into the document itself: the pages that
/// play it have no folder to load from.
function embedImages(document, find) {
  for (const asset of document.assets ?? []) {
    if (typeof asset.p !== 'string' || asset.layers || asset.p.startsWith('data:')) continue;
    const type = mediaTypes[path.extname(asset.p).slice(1).toLowerCase()];
    const bytes = type ? find(asset.u ?? '', asset.p) : null;
    if (!bytes) continue;
    asset.p = `data:${type};base64,${bytes.toString('base64')}`;
    asset.u = '';
    asset.e = 1;
  }
}

/// The document of a Lottie file. Pictures are looked for in the archive, or in `imageFolder` (the
/// file's own folder unless given).
export function readLottie(file, imageFolder = path.dirname(file)) {
  const bytes = fs.readFileSync(file);
  if (bytes.toString('latin1', 0, 2) !== 'PK') {
    const document = JSON.parse(bytes.toString('utf8').replace(/^\uFEFF/, ''));
    embedImages(document, (folder, name) => {
      const candidate = path.join(imageFolder, folder, name);
      return fs.existsSync(candidate) ? fs.readFileSync(candidate) : null;
    });
    return document;
  }
  const members = unzip(bytes);
  const { id } = JSON.parse(members.get('manifest.json').toString('utf8')).animations[0];
  const text = members.get(`a/${id}.json`) ?? members.get(`animations/${id}.json`);
  if (!text) throw new Error(`the archive lacks its animation "${id}"`);
  const document = JSON.parse(text.toString('utf8').replace(/^\uFEFF/, ''));
  embedImages(document, (_, name) => members.get(`i/${name}`) ?? members.get(`images/${name}`) ?? null);
  return document;
}
