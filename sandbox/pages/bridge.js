// How an ad talks to the client that shows it.
(function () {
  'use strict';
  var listeners = {};

  // A message is a navigation that never happens. In a frame of its own it cannot overtake another.
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

  // Says where and for how long a finger touched, as the ad's signals.
  var began = 0;
  addEventListener('pointerdown', function () { began = Date.now(); }, true);
  addEventListener('pointerup', function (event) {
    send('touch', {tx: Math.round(event.clientX), ty: Math.round(event.clientY),
                   td: Date.now() - began});
  }, true);

  // Has the client ping a click. It waits for what the tap opens: only a click that is under way
  // is reported with its ticket.
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
