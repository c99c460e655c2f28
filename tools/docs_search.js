// The search of the documentation: it works on searchIndex, which index.js defines, also without a web server.
(function () {
  'use strict';
  var most = 30;
  var field = document.getElementById('search');
  var list = document.getElementById('found');

  // Smaller is better; -1 for no match.
  function rank(entry, words) {
    var name = entry[0].toLowerCase();
    var text = (entry[0] + ' ' + entry[1] + ' ' + entry[3]).toLowerCase();
    for (var i = 0; i < words.length; ++i) {
      if (text.indexOf(words[i]) < 0) return -1;
    }
    if (name === words[0]) return 0;
    if (name.indexOf(words[0]) === 0) return 1;
    return name.indexOf(words[0]) > 0 ? 2 : 3;
  }

  function show(query) {
    list.textContent = '';
    var words = query.toLowerCase().split(/[\s.]+/).filter(Boolean);
    if (!words.length) return;
    // "ComboGrid.Rows" is looked for by its last word first.
    words.reverse();
    searchIndex
      .map(function (entry, place) { return [rank(entry, words), place, entry]; })
      .filter(function (found) { return found[0] >= 0; })
      .sort(function (a, b) { return a[0] - b[0] || a[1] - b[1]; })
      .slice(0, most)
      .forEach(function (found) {
        var item = document.createElement('li');
        var link = document.createElement('a');
        link.href = found[2][2];
        link.textContent = found[2][0];
        var kind = document.createElement('span');
        kind.textContent = ' ' + found[2][1];
        item.append(link, kind);
        list.append(item);
      });
    if (!list.children.length) {
      var none = document.createElement('li');
      none.textContent = 'Nothing found.';
      list.append(none);
    }
  }

  field.addEventListener('input', function () { show(field.value); });
  field.addEventListener('keydown', function (event) {
    var first = list.querySelector('a');
    if (event.key === 'Enter' && first) location.href = first.href;
    if (event.key === 'Escape') show(field.value = '');
  });
  document.addEventListener('keydown', function (event) {
    if (event.key !== '/' || event.target === field || event.ctrlKey || event.altKey || event.metaKey) return;
    event.preventDefault();
    field.focus();
  });
}());
