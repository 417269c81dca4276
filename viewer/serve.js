// A static file server for the built page, on 127.0.0.1 only.
//   node serve.js FOLDER [PORT]      (port 0 takes a free one)
// Prints "serving http://127.0.0.1:PORT/" once it listens. The browser tests
// start it the same way through startServer().
'use strict';
const http = require('http');
const fs = require('fs');
const path = require('path');

const TYPES = { '.html': 'text/html; charset=utf-8', '.js': 'text/javascript; charset=utf-8',
  '.css': 'text/css; charset=utf-8', '.wasm': 'application/wasm', '.png': 'image/png', '.json': 'application/json' };

function startServer(folder, port) {
  const root = path.resolve(folder);
  const server = http.createServer((req, res) => {
    let name;
    try { name = decodeURIComponent(new URL(req.url, 'http://localhost').pathname); } catch (e) { name = '/'; }
    if (name.endsWith('/')) name += 'index.html';
    const file = path.join(root, path.normalize(name));
    if (!file.startsWith(root + path.sep)) { res.writeHead(403); res.end(); return; }
    fs.readFile(file, (err, data) => {
      if (err) { res.writeHead(404, { 'Content-Type': 'text/plain' }); res.end('not found\n'); return; }
      res.writeHead(200, { 'Content-Type': TYPES[path.extname(file)] || 'application/octet-stream', 'Cache-Control': 'no-store' });
      res.end(data);
    });
  });
  return new Promise((resolve, reject) => {
    server.once('error', reject);
    server.listen(port, '127.0.0.1', () => resolve(server));
  });
}

module.exports = { startServer };

if (require.main === module) {
  const folder = process.argv[2] || '.';
  const port = Number(process.argv[3] || 8080);
  startServer(folder, port).then((server) => {
    console.log(`serving http://127.0.0.1:${server.address().port}/`);
  }, (err) => {
    console.error(`cannot serve on 127.0.0.1:${port}: ${err.message}`);
    process.exit(1);
  });
}
