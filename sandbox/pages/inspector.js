// The inspector: shows /log.json and changes the answers to clients. Everything that a client sent
// is shown as text, never as HTML.
(function () {
  'use strict';

  var POLL = 1000;
  var KEPT = 400;
  var KINDS = {
    ad: 'Ad request', hop: 'Redirect', impression: 'Impression', click: 'Click',
    landing: 'Landing page', script: 'Script', choice: 'Question', other: 'Other'
  };
  var COUNTED = ['ad', 'impression', 'click', 'landing', 'script'];

  // What each parameter of an ad request means, by group.
  var GROUPS = [
    ['The ad unit', {
      slotname: 'ad unit identifier', format: 'kind of ad', ad_frame: 'place in its screen, points',
      ad_bounds: 'own bounds, points', preqs: 'ad requests so far'
    }],
    ['What happened since the last request', {
      session_id: 'this run', pcc: 'clicks', prl: 'request to ad, ms', ppcl: 'ad shown to click, ms',
      pcl: 'click to return, ms', pcrl: 'preparing the click, ms', plpl: 'landing page load, ms',
      plpd: 'time on the landing page, ms', plpnc: 'links followed, http', plpsnc: 'links followed, https',
      pcbo: 'left for the system browser', pclb: 'the click left the application',
      pai: 'the click\'s "ai"', pit: 'ticket of the tracked click', ptime: 'since the first request, ms',
      aoi_timedout: 'opening ad timed out', aoi_nofill: 'opening ad had no fill'
    }],
    ['Who and where', {
      cust_gender: 'gender', cust_age: 'birthday', kw: 'keywords', uule: 'location, encrypted',
      extras: 'from the application', testing: 'test mode', adtest: 'test device'
    }],
    ['The device', {
      isu: 'device, hashed', platform: 'machine', submodel: 'model', hl: 'language', u_w: 'width, points',
      u_h: 'height, points', u_sd: 'pixels a point', u_so: 'way up', u_audio: 'where sound goes',
      net: 'network', ios_jb: 'jailbroken', ios_ipadc: 'phone application on a tablet',
      cap_bs: 'book applications'
    }],
    ['The application', {app_name: 'identifier', js: 'SDK version', ios_metadata: 'from the store'}]
  ];

  var state = {started: 0, last: 0, seen: [], paused: false, hidden: {choice: true}};
  var catalogue = {scenarios: [], ads: []};

  function $(id) { return document.getElementById(id); }

  // Makes an element with attributes and children; texts become text nodes.
  function make(tag, attributes) {
    var element = document.createElement(tag);
    Object.keys(attributes || {}).forEach(function (key) { element.setAttribute(key, attributes[key]); });
    Array.prototype.slice.call(arguments, 2).forEach(function (child) {
      if (child !== null && child !== undefined) element.append(child);
    });
    return element;
  }

  function drawn(tag, attributes, text) {
    var element = document.createElementNS('http://www.w3.org/2000/svg', tag);
    Object.keys(attributes).forEach(function (key) { element.setAttribute(key, attributes[key]); });
    if (text !== undefined) element.textContent = text;
    return element;
  }

  function duration(milliseconds) {
    if (milliseconds < 1000) return Math.round(milliseconds) + ' ms';
    if (milliseconds < 60000) return (milliseconds / 1000).toFixed(1) + ' s';
    return Math.floor(milliseconds / 60000) + ' min ' + Math.round(milliseconds % 60000 / 1000) + ' s';
  }

  function between(from, to) { return '+' + duration(Math.max(0, (to.time - from.time) * 1000)); }

  function clock(seconds) {
    var date = new Date(seconds * 1000);
    return date.toTimeString().slice(0, 8) + '.' + String(date.getMilliseconds()).padStart(3, '0');
  }

  function readable(value) {
    if (value === null || value === undefined) return '';
    if (Array.isArray(value)) return value.map(readable).join(', ');
    if (typeof value === 'object') {
      return Object.keys(value).map(function (key) { return key + ' ' + readable(value[key]); }).join(', ');
    }
    return String(value);
  }

  // Details of one request

  function table(title, rows) {
    if (!rows.length) return null;
    var body = make('tbody');
    rows.forEach(function (row) {
      body.append(make('tr', {}, make('th', {scope: 'row'}, row[0]),
                       make('td', {}, row[1], row[2] ? make('small', {}, row[2]) : null)));
    });
    return make('div', {}, make('h3', {}, title), make('table', {}, body));
  }

  function rowsOf(object) {
    return Object.keys(object || {}).map(function (key) { return [key, readable(object[key])]; });
  }

  function details(entry) {
    var box = make('div', {class: 'detail'});
    var parameters = Object.assign({}, entry.parameters);
    GROUPS.forEach(function (group) {
      var rows = [];
      Object.keys(group[1]).forEach(function (key) {
        if (!(key in parameters)) return;
        rows.push([key, readable(parameters[key]), group[1][key]]);
        if (key === 'uule' && entry.location) rows.push(['', entry.location, 'the same, decrypted']);
        delete parameters[key];
      });
      box.append(table(group[0], rows) || '');
    });
    box.append(table('More parameters', rowsOf(parameters)) || '');
    if (entry.signals) box.append(table('Signals, decrypted', rowsOf(entry.signals)));
    var query = Object.assign({}, entry.query);
    if (entry.parameters) delete query.params;
    box.append(table('Query', rowsOf(query)) || '', table('Headers', rowsOf(entry.headers)) || '');
    return box;
  }

  // Timeline

  function summaryText(entry) {
    var what = make('span', {class: 'what'});
    var parameters = entry.parameters || {};
    if (entry.kind === 'ad') {
      what.append((parameters.preqs ? 'No. ' + parameters.preqs + ' ' : '') + (parameters.slotname || 'without an ad unit') + ' ');
      what.append(make('small', {}, entry.scenario + (entry.ad ? ', ad ' + entry.ad : '') + ', ' + entry.ticket));
    } else if (entry.kind === 'choice') {
      what.append('Which scenario for ' + (entry.query.slotname || 'no ad unit') + '? ', make('small', {}, entry.scenario));
    } else {
      what.append(entry.path + ' ');
      if (entry.ticket && entry.path.indexOf(entry.ticket) < 0) what.append(make('small', {}, entry.ticket));
    }
    return what;
  }

  function row(entry) {
    var summary = make('summary', {}, make('time', {datetime: new Date(entry.time * 1000).toISOString()}, clock(entry.time)),
        make('span', {class: 'kind'}, KINDS[entry.kind] || entry.kind), summaryText(entry),
        make('span', {class: 'status' + (entry.status >= 400 || entry.status === 399 ? ' odd' : '')}, entry.status));
    var box = make('details', {}, summary);
    box.addEventListener('toggle', function () {
      if (box.open && box.children.length === 1) box.append(details(entry));
    });
    var item = make('li', {'data-kind': entry.kind, class: 'new'}, box);
    item.hidden = !!state.hidden[entry.kind];
    return item;
  }

  function showTimeline(fresh) {
    var list = document.querySelector('#timeline ol');
    fresh.forEach(function (entry) { list.prepend(row(entry)); });
    while (list.children.length > KEPT) list.lastChild.remove();
    document.querySelector('#timeline .empty').hidden = list.children.length > 0;
  }

  function makeFilters() {
    var group = document.querySelector('.filters');
    Object.keys(KINDS).forEach(function (kind) {
      var button = make('button', {type: 'button', 'data-kind': kind, 'aria-pressed': String(!state.hidden[kind])}, KINDS[kind]);
      button.addEventListener('click', function () {
        state.hidden[kind] = !state.hidden[kind];
        button.setAttribute('aria-pressed', String(!state.hidden[kind]));
        document.querySelectorAll('#timeline li[data-kind=' + kind + ']').forEach(function (item) {
          item.hidden = state.hidden[kind];
        });
      });
      group.append(button);
    });
  }

  // Journeys

  var CLICK_KEYS = ['pcc', 'pcl', 'pai', 'pit', 'ppcl', 'plpl', 'plpd', 'plpnc', 'plpsnc', 'pcbo', 'pclb'];

  function hasReport(parameters) {
    return !!parameters && (parameters.pcc || parameters.pcl || parameters.pai || parameters.pit);
  }

  // The journeys by ticket, oldest first. A report without a ticket belongs to the last ad that was
  // clicked before it.
  function journeysOf(seen) {
    var byTicket = new Map();
    function of(ticket) {
      if (!byTicket.has(ticket)) byTicket.set(ticket, {ticket: ticket, hops: [], impressions: [], clicks: [], landings: []});
      return byTicket.get(ticket);
    }
    function clickedBefore() {
      var found = null;
      byTicket.forEach(function (each) {
        if (!each.report && (each.clicks.length || each.landings.length)) found = each;
      });
      return found;
    }
    seen.forEach(function (entry) {
      if (entry.kind === 'ad' && hasReport(entry.parameters)) {
        var named = String(entry.parameters.pit || entry.parameters.pai || '').replace(/^\//, '');
        var journey = byTicket.get(named) || clickedBefore();
        if (journey && !journey.report) journey.report = entry;
      }
      if (!entry.ticket) return;
      if (entry.kind === 'ad') of(entry.ticket).ad = entry;
      if (entry.kind === 'hop') of(entry.ticket).hops.push(entry);
      if (entry.kind === 'impression') of(entry.ticket).impressions.push(entry);
      if (entry.kind === 'click') of(entry.ticket).clicks.push(entry);
      if (entry.kind === 'landing') of(entry.ticket).landings.push(entry);
    });
    return Array.from(byTicket.values()).filter(function (each) {
      return each.clicks.length || each.landings.length || each.report;
    });
  }

  function step(name, kind, entry, text) {
    return make('li', {'data-kind': kind, class: entry ? 'done' : ''}, make('b', {}, name), make('span', {}, text));
  }

  function times(list) { return list.length > 1 ? ', ' + list.length + ' times' : ''; }

  function reportList(journey) {
    var parameters = journey.report.parameters;
    var meanings = GROUPS[1][1];
    var list = make('dl', {class: 'report'});
    function add(term, value) { list.append(make('div', {}, make('dt', {}, term), make('dd', {}, value))); }
    CLICK_KEYS.forEach(function (key) {
      if (!(key in parameters)) return;
      var timed = /, ms$/.test(meanings[key]);
      add(meanings[key].replace(/, ms$/, ''), timed ? duration(Number(parameters[key])) : readable(parameters[key]));
    });
    // The server's own measurement, for comparison.
    if (journey.impressions.length && journey.clicks.length) {
      add('seen here: shown to click', duration((journey.clicks[0].time - journey.impressions[0].time) * 1000));
    }
    return list;
  }

  function adName(journey) {
    var hop = journey.hops[journey.hops.length - 1];
    return (journey.ad && journey.ad.ad) || (hop && hop.ad) || 'unknown ad';
  }

  function journeyBox(journey, open) {
    var ad = journey.ad, shown = journey.impressions[0], click = journey.clicks[0], landing = journey.landings[0];
    var first = click || landing;
    var heading = make('h3', {}, adName(journey), make('code', {}, journey.ticket));
    var steps = make('ol', {class: 'steps'},
        step('Served', 'ad', ad, ad ? clock(ad.time) : 'before the log begins'),
        step('Shown', 'impression', shown, shown ? (ad ? between(ad, shown) : clock(shown.time)) : 'not counted'),
        step('Clicked', 'click', click, click ? (shown ? between(shown, click) : clock(click.time)) + times(journey.clicks) : 'no ping'),
        step('Landed', 'landing', landing, landing ? (click ? between(click, landing) : clock(landing.time)) + times(journey.landings) : 'not on our pages'),
        step('Reported', 'ad', journey.report, journey.report ? (first ? between(first, journey.report) : clock(journey.report.time)) : 'with the next request'));
    var box = make('article', {class: 'journey'}, heading, steps);
    if (journey.report) {
      var report = make('details', {}, make('summary', {}, 'What the client reported'), reportList(journey));
      report.open = open;
      box.append(report);
    }
    return box;
  }

  var journeyBoxes = new Map();

  // Only changed journeys get a new box, so that focus and opened reports stay.
  function showJourneys() {
    var list = document.querySelector('#journeys .list'), before = journeyBoxes, newest = true;
    journeyBoxes = new Map();
    journeysOf(state.seen).slice(-4).reverse().forEach(function (journey) {
      var signature = [journey.impressions.length, journey.clicks.length, journey.landings.length, journey.report && journey.report.number].join();
      var kept = before.get(journey.ticket);
      if (!kept || kept.signature !== signature) kept = {signature: signature, box: journeyBox(journey, newest)};
      if (journey.report) newest = false;
      journeyBoxes.set(journey.ticket, kept);
    });
    var boxes = Array.from(journeyBoxes.values()).map(function (each) { return each.box; });
    Array.from(list.children).forEach(function (box) { if (boxes.indexOf(box) < 0) box.remove(); });
    boxes.forEach(function (box, index) { if (list.children[index] !== box) list.insertBefore(box, list.children[index] || null); });
    document.querySelector('#journeys .empty').hidden = boxes.length > 0;
  }

  // Latencies

  var HEIGHT = 84, FOOT = 14, BARS = 40;

  function chart(title, key, kind) {
    var points = state.seen.filter(function (entry) { return entry.kind === 'ad' && entry.parameters && entry.parameters[key] !== undefined; })
        .slice(-BARS).map(function (entry) { return {value: Number(entry.parameters[key]) || 0, entry: entry}; });
    if (!points.length) return null;
    var values = points.map(function (point) { return point.value; });
    var most = Math.max.apply(null, values), sorted = values.slice().sort(function (a, b) { return a - b; });
    var median = duration(sorted[Math.floor(sorted.length / 2)]);
    var words = 'median ' + median + ', most ' + duration(most);
    var width = Math.min($('charts').clientWidth || 320, 520);
    var svg = drawn('svg', {width: width, height: HEIGHT, viewBox: '0 0 ' + width + ' ' + HEIGHT, role: 'img', 'aria-label': title + ', last ' + points.length + ' requests: ' + words});
    var tall = HEIGHT - FOOT - 6, wide = width / BARS;
    svg.append(drawn('line', {x1: 0, x2: width, y1: HEIGHT - FOOT + .5, y2: HEIGHT - FOOT + .5}));
    points.forEach(function (point, index) {
      var height = Math.max(2, point.value / (most || 1) * tall);
      var bar = drawn('rect', {x: index * wide + 1, width: wide - 2, y: HEIGHT - FOOT - height, height: height, rx: 1.5});
      bar.append(drawn('title', {}, duration(point.value) + ', reported by request ' + (point.entry.parameters.preqs || point.entry.number)));
      svg.append(bar);
    });
    svg.append(drawn('text', {x: 0, y: HEIGHT - 2}, 'request ' + (points[0].entry.parameters.preqs || points[0].entry.number)));
    if (points.length > 10) {
      var last = points[points.length - 1].entry;
      svg.append(drawn('text', {x: points.length * wide, y: HEIGHT - 2, 'text-anchor': 'end'}, last.parameters.preqs || last.number));
    }
    return make('div', {class: 'chart', 'data-kind': kind}, make('h3', {}, title, make('span', {}, words)), svg);
  }

  function showCharts() {
    var charts = [chart('Request to ad', 'prl', 'ad'), chart('Page load', 'plpl', 'landing'),
                  chart('Click to return', 'pcl', 'click')].filter(Boolean);
    if (!charts.length) charts = [make('p', {class: 'empty'}, 'Clients report them with the next request.')];
    $('charts').replaceChildren.apply($('charts'), charts);
  }

  function showCounts(counts) {
    var list = document.querySelector('#counts dl');
    list.replaceChildren.apply(list, COUNTED.map(function (kind) {
      return make('div', {'data-kind': kind}, make('dt', {}, kind === 'script' ? 'Script' : KINDS[kind] + 's'), make('dd', {}, counts[kind] || 0));
    }));
  }

  // The switch

  function fillSwitch() {
    var groups = {};
    catalogue.scenarios.forEach(function (each) {
      if (!groups[each.actor]) $('scenario').append(groups[each.actor] = make('optgroup', {label: 'By the ' + each.actor}));
      groups[each.actor].append(make('option', {value: each.name}, each.name));
    });
    $('ad').append(make('option', {value: ''}, 'The good ones in turn'));
    catalogue.ads.forEach(function (each) { $('ad').append(make('option', {value: each.name}, each.title)); });
  }

  function named(list, name) {
    return list.filter(function (each) { return each.name === name; })[0];
  }

  function showSwitch(log) {
    ['scenario', 'ad', 'refresh'].forEach(function (key) {
      if (document.activeElement !== $(key)) $(key).value = log[key];
    });
    var scenario = named(catalogue.scenarios, $('scenario').value);
    $('does').textContent = scenario ? scenario.does : '';
    $('expected').textContent = scenario ? scenario.expected : '';
    var ad = named(catalogue.ads, $('ad').value);
    $('opens').textContent = ad ? 'A tap opens ' + ad.opens + '.' : 'Without the ones that are there for a test.';
    var address = ad ? 'preview/' + encodeURIComponent(ad.name) : '';
    if ($('preview').getAttribute('src') !== (address || null)) {
      if (address) $('preview').setAttribute('src', address); else $('preview').removeAttribute('src');
      $('preview').hidden = !address;
    }
  }

  function tell(key, value) {
    $('problem').textContent = '';
    return fetch('control?' + key + '=' + encodeURIComponent(value), {method: 'POST'}).then(function (answer) {
      if (!answer.ok) return answer.text().then(function (text) { throw new Error(text); });
      return answer.json();
    }).then(showSwitch).catch(function (error) { $('problem').textContent = 'Not changed: ' + error.message; });
  }

  // Polling

  function forget() {
    state.seen = [];
    document.querySelector('#timeline ol').replaceChildren();
  }

  function take(log) {
    if (log.started !== state.started) {
      var wasBefore = state.started !== 0 && state.last > 0;
      state.started = log.started;
      if (wasBefore) {
        // The server was restarted: its log is read from the start.
        forget();
        state.last = 0;
        return poll();
      }
    }
    state.last = log.last;
    showSwitch(log);
    showCounts(log.counts);
    if (!log.requests.length && state.shown) return;
    state.shown = true;
    state.seen = state.seen.concat(log.requests).slice(-KEPT);
    showTimeline(log.requests);
    showJourneys();
    showCharts();
    if (log.requests.length) $('news').textContent = log.requests.length + ' new requests';
  }

  function connected(kind, text) {
    $('connection').className = kind;
    if ($('connection').lastChild.textContent !== text) $('connection').lastChild.textContent = text;
  }

  function poll() {
    return fetch('log.json?since=' + state.last).then(function (answer) { return answer.json(); })
        .then(function (log) { connected('live', 'Live at ' + location.host); return take(log); })
        .catch(function () { connected('lost', 'The sandbox does not answer. Trying again.'); });
  }

  function keepPolling() {
    var next = state.paused || document.hidden ? Promise.resolve() : poll();
    next.then(function () { setTimeout(keepPolling, POLL); });
  }

  $('pause').addEventListener('click', function () {
    state.paused = !state.paused;
    $('pause').setAttribute('aria-pressed', String(state.paused));
    if (state.paused) connected('', 'Paused');
  });
  $('clear').addEventListener('click', function () {
    tell('clear', 1).then(function () { forget(); state.shown = false; showTimeline([]); showJourneys(); showCharts(); });
  });
  ['scenario', 'ad', 'refresh'].forEach(function (key) {
    $(key).addEventListener('change', function () { tell(key, $(key).value); });
  });

  addEventListener('resize', showCharts);
  makeFilters();
  fetch('scenarios.json').then(function (answer) { return answer.json(); }).then(function (found) {
    catalogue = found;
    fillSwitch();
  }).catch(function () {}).then(keepPolling);
})();
