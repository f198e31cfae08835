// The messages between an ad and the client that shows it.
(function () {
  'use strict';
  var listeners = {};

  // A message is a navigation that the client refuses. Each has a frame of its own, because a new
  // navigation of the same frame would replace it.
  function send(name, parameters) {
    var fields = Object.keys(parameters || {}).map(function (key) {
      return encodeURIComponent(key) + '=' + encodeURIComponent(parameters[key]);
    });
    var frame = document.createElement('iframe');
    frame.hidden = true;
    frame.title = '';
    frame.src = 'gmsg://urvo/' + name + (fields.length ? '?' + fields.join('&') : '');
    document.body.appendChild(frame);
    setTimeout(function () { frame.remove(); }, 1000);
  }

  // Reports the position and the duration of touches, for the ad's signals.
  var began = 0;
  addEventListener('pointerdown', function () { began = Date.now(); }, true);
  addEventListener('pointerup', function (event) {
    send('touch', {tx: Math.round(event.clientX), ty: Math.round(event.clientY),
                   td: Date.now() - began});
  }, true);

  // Asks the client to ping a click. This waits until the tap has opened its page: the ticket is
  // reported only for a click that is under way.
  function clicked(address) {
    setTimeout(function () { send('click', {u: address}); }, 0);
  }

  window.ad = {
    send: send,
    clicked: clicked,
    on: function (name, listener) { listeners[name] = listener; }
  };
  window.URVO_ReceiveMessage = function (name, info) {
    if (listeners[name]) listeners[name](info);
    if (listeners['*']) listeners['*'](info, name);
  };
})();
