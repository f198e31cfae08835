// The ad engine script. A client loads it into a hidden page whose base is the ad server, calls
// URVO_buildAdURL with its parameters, and waits for one message.
(function () {
  'use strict';

  // The ad server's address: the page's base, with a slash at the end.
  function base() {
    return document.baseURI.replace(/[?#].*$/, '').replace(/\/?$/, '/');
  }

  function send(name, parameters) {
    var fields = Object.keys(parameters).map(function (key) {
      return encodeURIComponent(key) + '=' + encodeURIComponent(parameters[key]);
    });
    window.location = 'gmsg://urvo/' + name + (fields.length ? '?' + fields.join('&') : '');
  }

  // All parameters are sent, so that the server can log them.
  function adURL(parameters) {
    return base() + 'ad?slotname=' + encodeURIComponent(parameters.slotname || '') +
        '&preqs=' + encodeURIComponent(parameters.preqs || 0) +
        '&params=' + encodeURIComponent(JSON.stringify(parameters));
  }

  function typeFor(parameters) {
    return parameters.format === 'interstitial_mb' ? 'strevel' : 'qorm';
  }

  function answer(parameters, scenario) {
    var url = adURL(parameters);
    var type = typeFor(parameters);
    switch (scenario) {
      case 'script-invalid-request': send('invalidRequest', {reason: 'sandbox'}); break;
      case 'script-unable-to-serve': send('unableToServe', {reason: 'sandbox'}); break;
      case 'script-errors': send('loadAdURL', {errors: 'sandbox', url: url, type: type}); break;
      case 'script-no-url': send('loadAdURL', {type: type}); break;
      case 'script-tovask': send('loadAdURL', {url: url, type: 'tovask'}); break;
      case 'script-silent': break;
      case 'script-throws': throw new Error('The sandbox was set to fail here.');
      case 'script-twice':
        send('loadAdURL', {url: url, type: type});
        setTimeout(function () { send('invalidRequest', {reason: 'second'}); }, 50);
        break;
      default: send('loadAdURL', {url: url, type: type});
    }
  }

  // The scenario that the ad unit or the base names. Without one the server is asked.
  function namedScenario(slot) {
    var unit = /^scenario-(.+)$/.exec(slot) || /\/as\/([^\/]+)\/$/.exec(base());
    if (unit) return unit[1];
    return /^ad-/.test(slot) ? 'fill' : null;
  }

  window.URVO_buildAdURL = function (parameters) {
    var slot = String(parameters.slotname || '');
    var named = namedScenario(slot);
    if (named !== null) {
      answer(parameters, named);
      return;
    }
    var question = new XMLHttpRequest();
    question.open('GET', base() + 'choice.json?slotname=' + encodeURIComponent(slot));
    question.timeout = 5000;
    question.onloadend = function () {
      var scenario = '';
      try { scenario = JSON.parse(question.responseText).scenario; } catch (error) { /* none */ }
      answer(parameters, scenario);
    };
    question.send();
  };

  // Receives the client's messages. An ad that listens replaces it.
  window.URVO_ReceiveMessage = window.URVO_ReceiveMessage || function () {};
})();
