#!/usr/bin/gjs -m
// A GTK application with an ad banner beneath its content: banner.js [AD_NETWORK_URL [AD_UNIT]].
// It tells on standard output what happens to the ad.
import Gtk from 'gi://Gtk?version=4.0';
import Valdren from 'gi://Valdren?version=1';
import { exit, programArgs } from 'system';

const [adNetwork, adUnit = 'example'] = programArgs;

function activate(application) {
  const window = new Gtk.ApplicationWindow({
    application, title: 'Banner example', default_width: 360, default_height: 480,
  });
  const box = new Gtk.Box({ orientation: Gtk.Orientation.VERTICAL });
  box.append(new Gtk.Label({ label: "The application's own content", vexpand: true }));
  window.set_child(box);

  const banner = new Valdren.Banner({ ad_unit_id: adUnit });
  box.append(banner);
  banner.connect('ad-received', () => print('ad received'));
  banner.connect('ad-failed', (_, error) => print(error.message));
  banner.connect('will-present-screen', () => print('screen presented'));
  banner.connect('did-dismiss-screen', () => print('screen dismissed'));
  banner.load_request(null);

  window.present();
}

if (adNetwork) Valdren.set_ad_network(adNetwork);
const application = new Gtk.Application({ application_id: 'com.valdren.example.gjs' });
application.connect('activate', activate);
exit(application.run([]));
