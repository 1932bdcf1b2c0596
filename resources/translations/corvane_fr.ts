<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr" sourcelanguage="en">
<context>
    <name>Localizable</name>
    <message>
        <source>CPU</source>
        <translation>CPU</translation>
    </message>
    <message>
        <source>GPU</source>
        <translation>GPU</translation>
    </message>
    <message>
        <source>Memory</source>
        <translation>Mémoire</translation>
    </message>
    <message>
        <source>Storage</source>
        <translation>Stockage</translation>
    </message>
    <message>
        <source>Sensors</source>
        <translation>Capteurs</translation>
    </message>
    <message>
        <source>SSD</source>
        <translation>SSD</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Paramètres</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Quitter</translation>
    </message>
    <message>
        <source>Battery</source>
        <translation>Batterie</translation>
    </message>
    <message>
        <source>Ambient</source>
        <translation>Ambiante</translation>
    </message>
    <message>
        <source>Other</source>
        <translation>Autre</translation>
    </message>
    <message>
        <source>System</source>
        <translation>Système</translation>
    </message>
    <message>
        <source>Nominal</source>
        <translation>Normal</translation>
    </message>
    <message>
        <source>Elevated</source>
        <translation>Élevé</translation>
    </message>
    <message>
        <source>High</source>
        <translation>Très élevé</translation>
    </message>
    <message>
        <source>Critical</source>
        <translation>Critique</translation>
    </message>
    <message>
        <source>Unknown</source>
        <translation>Inconnu</translation>
    </message>
    <message>
        <source>%@ RPM</source>
        <extracomment>A fan speed; %@ is the number of revolutions per minute, already formatted.</extracomment>
        <translation>%@ tr/min</translation>
    </message>
    <message>
        <source>Software Update</source>
        <translation>Mise à jour de logiciels</translation>
    </message>
    <message>
        <source>Corvane %1 is available — you have %2</source>
        <translation>Corvane %1 est disponible — vous avez la version %2</translation>
    </message>
    <message>
        <source>Read the release notes</source>
        <translation>Lire les notes de version</translation>
    </message>
    <message>
        <source>Skip This Version</source>
        <translation>Ignorer cette version</translation>
    </message>
    <message>
        <source>Remind Me Later</source>
        <translation>Me le rappeler plus tard</translation>
    </message>
    <message>
        <source>Install and Relaunch</source>
        <translation>Installer et relancer</translation>
    </message>
    <message>
        <source>Downloading Corvane %1…</source>
        <translation>Téléchargement de Corvane %1…</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>Installing Corvane %1…</source>
        <translation>Installation de Corvane %1…</translation>
    </message>
    <message>
        <source>You're up to date</source>
        <translation>Vous êtes à jour</translation>
    </message>
    <message>
        <source>Corvane %1 is the newest version available.</source>
        <translation>Corvane %1 est la version la plus récente disponible.</translation>
    </message>
    <message>
        <source>The update could not be completed.</source>
        <translation>La mise à jour n’a pas pu être effectuée.</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>%@ free</source>
        <translation>%@ disponibles</translation>
    </message>
    <message>
        <source>%@ of %@</source>
        <translation>%@ sur %@</translation>
    </message>
    <message>
        <source>1 min</source>
        <translation>1 min</translation>
    </message>
    <message>
        <source>15 min</source>
        <translation>15 min</translation>
    </message>
    <message>
        <source>5 min</source>
        <translation>5 min</translation>
    </message>
    <message>
        <source>Active</source>
        <translation>Active</translation>
    </message>
    <message>
        <source>App Memory</source>
        <translation>Mémoire des apps</translation>
    </message>
    <message>
        <source>Available</source>
        <translation>Disponible</translation>
    </message>
    <message>
        <source>BATTERY</source>
        <translation>BATTERIE</translation>
    </message>
    <message>
        <source>Cache</source>
        <translation>Cache</translation>
    </message>
    <message>
        <source>Capacity</source>
        <translation>Capacité</translation>
    </message>
    <message>
        <source>Charge</source>
        <translation>Charge</translation>
    </message>
    <message>
        <source>Charging</source>
        <translation>En charge</translation>
    </message>
    <message>
        <source>Compressed</source>
        <translation>Compressée</translation>
    </message>
    <message>
        <source>Cores</source>
        <translation>Cœurs</translation>
    </message>
    <message>
        <source>Cycles</source>
        <translation>Cycles</translation>
    </message>
    <message>
        <source>DISK</source>
        <translation>DISQUE</translation>
    </message>
    <message>
        <source>Device</source>
        <translation>Appareil</translation>
    </message>
    <message>
        <source>Discharging</source>
        <translation>En décharge</translation>
    </message>
    <message>
        <source>Draw</source>
        <translation>Consommation</translation>
    </message>
    <message>
        <source>FANS</source>
        <translation>VENTILATEURS</translation>
    </message>
    <message>
        <source>Fan %lld</source>
        <translation>Ventilateur %lld</translation>
    </message>
    <message>
        <source>Fully Charged</source>
        <translation>Chargée</translation>
    </message>
    <message>
        <source>Health</source>
        <translation>État</translation>
    </message>
    <message>
        <source>Idle</source>
        <translation>Inactif</translation>
    </message>
    <message>
        <source>LOAD AVERAGE</source>
        <translation>CHARGE MOYENNE</translation>
    </message>
    <message>
        <source>MEMORY</source>
        <translation>MÉMOIRE</translation>
    </message>
    <message>
        <source>Memory Used</source>
        <translation>Mémoire utilisée</translation>
    </message>
    <message>
        <source>Memory in use</source>
        <translation>Mémoire utilisée</translation>
    </message>
    <message>
        <source>No readable hwmon, thermal zone or applesmc sensors</source>
        <translation>Aucun capteur lisible dans hwmon, les zones thermiques ou applesmc</translation>
    </message>
    <message>
        <source>Normal</source>
        <translation>Normale</translation>
    </message>
    <message>
        <source>PAGES</source>
        <translation>PAGES</translation>
    </message>
    <message>
        <source>POWER</source>
        <translation>ALIMENTATION</translation>
    </message>
    <message>
        <source>PRESSURE</source>
        <translation>PRESSION</translation>
    </message>
    <message>
        <source>PROCESSES</source>
        <translation>PROCESSUS</translation>
    </message>
    <message>
        <source>Page Ins</source>
        <translation>Pages entrantes</translation>
    </message>
    <message>
        <source>Page Outs</source>
        <translation>Pages sortantes</translation>
    </message>
    <message>
        <source>Peak %@ of %@ cores</source>
        <translation>Pic %@ sur %@ cœurs</translation>
    </message>
    <message>
        <source>Power</source>
        <translation>Puissance</translation>
    </message>
    <message>
        <source>Power Adapter</source>
        <translation>Adaptateur secteur</translation>
    </message>
    <message>
        <source>Pressure</source>
        <translation>Pression</translation>
    </message>
    <message>
        <source>Read</source>
        <translation>Lecture</translation>
    </message>
    <message>
        <source>Renderer</source>
        <translation>Rendu</translation>
    </message>
    <message>
        <source>SWAP MEMORY</source>
        <translation>MÉMOIRE D’ÉCHANGE</translation>
    </message>
    <message>
        <source>Status</source>
        <translation>Statut</translation>
    </message>
    <message>
        <source>TEMPERATURES</source>
        <translation>TEMPÉRATURES</translation>
    </message>
    <message>
        <source>THERMAL STATE</source>
        <translation>ÉTAT THERMIQUE</translation>
    </message>
    <message>
        <source>Temperature</source>
        <translation>Température</translation>
    </message>
    <message>
        <source>Tiler</source>
        <translation>Tiler</translation>
    </message>
    <message>
        <source>Time Left</source>
        <translation>Temps restant</translation>
    </message>
    <message>
        <source>USAGE</source>
        <translation>UTILISATION</translation>
    </message>
    <message>
        <source>Unavailable</source>
        <translation>Indisponible</translation>
    </message>
    <message>
        <source>Uptime</source>
        <translation>Temps de fonctionnement</translation>
    </message>
    <message>
        <source>Used</source>
        <translation>Utilisé</translation>
    </message>
    <message>
        <source>User</source>
        <translation>Utilisateur</translation>
    </message>
    <message>
        <source>Voltage</source>
        <translation>Tension</translation>
    </message>
    <message>
        <source>Warning</source>
        <translation>Avertissement</translation>
    </message>
    <message>
        <source>Wired</source>
        <translation>Résidente</translation>
    </message>
    <message>
        <source>Write</source>
        <translation>Écriture</translation>
    </message>
    <message>
        <source>Corvane Settings</source>
        <translation>Réglages de Corvane</translation>
    </message>
    <message>
        <source>Meters</source>
        <translation>Indicateurs</translation>
    </message>
    <message>
        <source>General</source>
        <translation>Général</translation>
    </message>
    <message>
        <source>Updates</source>
        <translation>Mises à jour</translation>
    </message>
    <message>
        <source>About</source>
        <translation>À propos</translation>
    </message>
    <message>
        <source>Corvane could not save your last change. It stays here and is saved with the next change that goes through.</source>
        <translation>Corvane n’a pas pu enregistrer votre dernière modification. Elle reste affichée ici et sera enregistrée avec la prochaine modification qui aboutit.</translation>
    </message>
    <message>
        <source>Menu Bar</source>
        <translation>Barre des menus</translation>
    </message>
    <message>
        <source>Drag, or press Alt+Up or Alt+Down, to reorder. Hidden meters keep their places.</source>
        <translation>Faites glisser, ou appuyez sur Alt+Haut ou Alt+Bas, pour réordonner. Les indicateurs masqués gardent leur place.</translation>
    </message>
    <message>
        <source>Readouts</source>
        <translation>Valeurs</translation>
    </message>
    <message>
        <source>Appearance</source>
        <translation>Apparence</translation>
    </message>
    <message>
        <source>CPU graph</source>
        <translation>Graphique CPU</translation>
    </message>
    <message>
        <source>Shape</source>
        <translation>Forme</translation>
    </message>
    <message>
        <source>Labels</source>
        <translation>Étiquettes</translation>
    </message>
    <message>
        <source>Accents</source>
        <translation>Couleurs</translation>
    </message>
    <message>
        <source>CPU fast cores</source>
        <translation>CPU, cœurs rapides</translation>
    </message>
    <message>
        <source>Custom…</source>
        <translation>Personnalisée…</translation>
    </message>
    <message>
        <source>Accent</source>
        <translation>Couleur</translation>
    </message>
    <message>
        <source>Corvane</source>
        <translation>Corvane</translation>
    </message>
    <message>
        <source>Show Corvane in the menu bar</source>
        <translation>Afficher Corvane dans la barre des menus</translation>
    </message>
    <message>
        <source>Login</source>
        <translation>Ouverture de session</translation>
    </message>
    <message>
        <source>Start Corvane at login</source>
        <translation>Lancer Corvane à l’ouverture de session</translation>
    </message>
    <message>
        <source>Refresh every</source>
        <translation>Actualiser toutes les</translation>
    </message>
    <message>
        <source>Temperatures</source>
        <translation>Températures</translation>
    </message>
    <message>
        <source>Light</source>
        <translation>Clair</translation>
    </message>
    <message>
        <source>Dark</source>
        <translation>Sombre</translation>
    </message>
    <message>
        <source>Panel appearance</source>
        <translation>Apparence des panneaux</translation>
    </message>
    <message>
        <source>Translucent</source>
        <translation>Translucide</translation>
    </message>
    <message>
        <source>Opaque</source>
        <translation>Opaque</translation>
    </message>
    <message>
        <source>Panel background</source>
        <translation>Fond des panneaux</translation>
    </message>
    <message>
        <source>Language</source>
        <translation>Langue</translation>
    </message>
    <message>
        <source>Corvane restarts in the new language.</source>
        <translation>Corvane redémarre dans la nouvelle langue.</translation>
    </message>
    <message>
        <source>Check for updates automatically</source>
        <translation>Rechercher automatiquement les mises à jour</translation>
    </message>
    <message>
        <source>Check Now</source>
        <translation>Rechercher maintenant</translation>
    </message>
    <message>
        <source>Corvane checks for updates while it runs from its bundle.</source>
        <translation>Corvane recherche les mises à jour quand il s’exécute depuis son paquet.</translation>
    </message>
    <message>
        <source>This version</source>
        <translation>Cette version</translation>
    </message>
    <message>
        <source>Corvane %1</source>
        <translation>Corvane %1</translation>
    </message>
    <message>
        <source>No update offered</source>
        <translation>Aucune mise à jour proposée</translation>
    </message>
    <message>
        <source>A system monitor for the menu bar.</source>
        <translation>Un moniteur système pour la barre des menus.</translation>
    </message>
    <message>
        <source>Version</source>
        <translation>Version</translation>
    </message>
    <message>
        <source>Build</source>
        <translation>Build</translation>
    </message>
    <message>
        <source>Settings file</source>
        <translation>Fichier de réglages</translation>
    </message>
    <message>
        <source>Documentation</source>
        <translation>Documentation</translation>
    </message>
    <message>
        <source>Read me</source>
        <translation>Lisez-moi</translation>
    </message>
    <message>
        <source>How readings are made on Linux</source>
        <translation>Comment les valeurs sont lues sous Linux</translation>
    </message>
    <message>
        <source>Not saved</source>
        <translation>Non enregistré</translation>
    </message>
    <message>
        <source>Off</source>
        <translation>Désactivé</translation>
    </message>
    <message>
        <source>Usage</source>
        <translation>Utilisation</translation>
    </message>
    <message>
        <source>Swap Used</source>
        <translation>Swap utilisé</translation>
    </message>
    <message>
        <source>Free Space</source>
        <translation>Espace libre</translation>
    </message>
    <message>
        <source>Hottest Sensor</source>
        <translation>Capteur le plus chaud</translation>
    </message>
    <message>
        <source>GPU Temperature</source>
        <translation>Température GPU</translation>
    </message>
    <message>
        <source>Fan Speed</source>
        <translation>Vitesse du ventilateur</translation>
    </message>
    <message>
        <source>Bars</source>
        <translation>Barres</translation>
    </message>
    <message>
        <source>Wave</source>
        <translation>Onde</translation>
    </message>
    <message>
        <source>Compact</source>
        <translation>Compact</translation>
    </message>
    <message>
        <source>Pill</source>
        <translation>Pilule</translation>
    </message>
    <message>
        <source>Square</source>
        <translation>Carré</translation>
    </message>
    <message>
        <source>Icons</source>
        <translation>Icônes</translation>
    </message>
    <message>
        <source>Letters</source>
        <translation>Lettres</translation>
    </message>
    <message>
        <source>Signal</source>
        <translation>Signal</translation>
    </message>
    <message>
        <source>Blue</source>
        <translation>Bleu</translation>
    </message>
    <message>
        <source>Indigo</source>
        <translation>Indigo</translation>
    </message>
    <message>
        <source>Purple</source>
        <translation>Violet</translation>
    </message>
    <message>
        <source>Teal</source>
        <translation>Sarcelle</translation>
    </message>
    <message>
        <source>Pine</source>
        <translation>Pin</translation>
    </message>
    <message>
        <source>Amber</source>
        <translation>Ambre</translation>
    </message>
    <message>
        <source>Graphite</source>
        <translation>Graphite</translation>
    </message>
    <message>
        <source>Custom</source>
        <translation>Personnalisée</translation>
    </message>
    <message>
        <source>Celsius</source>
        <translation>Celsius</translation>
    </message>
    <message>
        <source>Fahrenheit</source>
        <translation>Fahrenheit</translation>
    </message>
</context>
</TS>
