<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="es" sourcelanguage="en">
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
        <translation>Memoria</translation>
    </message>
    <message>
        <source>Storage</source>
        <translation>Almacenamiento</translation>
    </message>
    <message>
        <source>Sensors</source>
        <translation>Sensores</translation>
    </message>
    <message>
        <source>SSD</source>
        <translation>SSD</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Ajustes</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Salir</translation>
    </message>
    <message>
        <source>Battery</source>
        <translation>Batería</translation>
    </message>
    <message>
        <source>Ambient</source>
        <translation>Ambiente</translation>
    </message>
    <message>
        <source>Other</source>
        <translation>Otros</translation>
    </message>
    <message>
        <source>System</source>
        <translation>Sistema</translation>
    </message>
    <message>
        <source>Nominal</source>
        <translation>Normal</translation>
    </message>
    <message>
        <source>Elevated</source>
        <translation>Elevado</translation>
    </message>
    <message>
        <source>High</source>
        <translation>Alto</translation>
    </message>
    <message>
        <source>Critical</source>
        <translation>Crítico</translation>
    </message>
    <message>
        <source>Unknown</source>
        <translation>Desconocido</translation>
    </message>
    <message>
        <source>%@ RPM</source>
        <extracomment>A fan speed; %@ is the number of revolutions per minute, already formatted.</extracomment>
        <translation>%@ rpm</translation>
    </message>
    <message>
        <source>Software Update</source>
        <translation>Actualización de software</translation>
    </message>
    <message>
        <source>Corvane %1 is available — you have %2</source>
        <translation>Corvane %1 está disponible; tienes la versión %2</translation>
    </message>
    <message>
        <source>Read the release notes</source>
        <translation>Leer las notas de la versión</translation>
    </message>
    <message>
        <source>Skip This Version</source>
        <translation>Omitir esta versión</translation>
    </message>
    <message>
        <source>Remind Me Later</source>
        <translation>Recordármelo más tarde</translation>
    </message>
    <message>
        <source>Install and Relaunch</source>
        <translation>Instalar y reiniciar</translation>
    </message>
    <message>
        <source>Downloading Corvane %1…</source>
        <translation>Descargando Corvane %1…</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancelar</translation>
    </message>
    <message>
        <source>Installing Corvane %1…</source>
        <translation>Instalando Corvane %1…</translation>
    </message>
    <message>
        <source>You're up to date</source>
        <translation>Ya tienes la última versión</translation>
    </message>
    <message>
        <source>Corvane %1 is the newest version available.</source>
        <translation>Corvane %1 es la versión más reciente disponible.</translation>
    </message>
    <message>
        <source>The update could not be completed.</source>
        <translation>No se ha podido completar la actualización.</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>Aceptar</translation>
    </message>
    <message>
        <source>%@ free</source>
        <translation>%@ libres</translation>
    </message>
    <message>
        <source>%@ of %@</source>
        <translation>%@ de %@</translation>
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
        <translation>Activa</translation>
    </message>
    <message>
        <source>App Memory</source>
        <translation>Memoria de apps</translation>
    </message>
    <message>
        <source>Available</source>
        <translation>Disponible</translation>
    </message>
    <message>
        <source>BATTERY</source>
        <translation>BATERÍA</translation>
    </message>
    <message>
        <source>Cache</source>
        <translation>Caché</translation>
    </message>
    <message>
        <source>Capacity</source>
        <translation>Capacidad</translation>
    </message>
    <message>
        <source>Charge</source>
        <translation>Carga</translation>
    </message>
    <message>
        <source>Charging</source>
        <translation>Cargando</translation>
    </message>
    <message>
        <source>Compressed</source>
        <translation>Comprimida</translation>
    </message>
    <message>
        <source>Cores</source>
        <translation>Núcleos</translation>
    </message>
    <message>
        <source>Cycles</source>
        <translation>Ciclos</translation>
    </message>
    <message>
        <source>DISK</source>
        <translation>DISCO</translation>
    </message>
    <message>
        <source>Device</source>
        <translation>Dispositivo</translation>
    </message>
    <message>
        <source>Discharging</source>
        <translation>Descargando</translation>
    </message>
    <message>
        <source>Draw</source>
        <translation>Consumo</translation>
    </message>
    <message>
        <source>FANS</source>
        <translation>VENTILADORES</translation>
    </message>
    <message>
        <source>Fan %lld</source>
        <translation>Ventilador %lld</translation>
    </message>
    <message>
        <source>Fully Charged</source>
        <translation>Carga completa</translation>
    </message>
    <message>
        <source>Health</source>
        <translation>Salud</translation>
    </message>
    <message>
        <source>Idle</source>
        <translation>Inactivo</translation>
    </message>
    <message>
        <source>LOAD AVERAGE</source>
        <translation>CARGA MEDIA</translation>
    </message>
    <message>
        <source>MEMORY</source>
        <translation>MEMORIA</translation>
    </message>
    <message>
        <source>Memory Used</source>
        <translation>Memoria usada</translation>
    </message>
    <message>
        <source>Memory in use</source>
        <translation>Memoria en uso</translation>
    </message>
    <message>
        <source>No readable hwmon, thermal zone or applesmc sensors</source>
        <translation>No hay sensores legibles en hwmon, zonas térmicas ni applesmc</translation>
    </message>
    <message>
        <source>Normal</source>
        <translation>Normal</translation>
    </message>
    <message>
        <source>PAGES</source>
        <translation>PÁGINAS</translation>
    </message>
    <message>
        <source>POWER</source>
        <translation>ENERGÍA</translation>
    </message>
    <message>
        <source>PRESSURE</source>
        <translation>PRESIÓN</translation>
    </message>
    <message>
        <source>PROCESSES</source>
        <translation>PROCESOS</translation>
    </message>
    <message>
        <source>Page Ins</source>
        <translation>Entradas de página</translation>
    </message>
    <message>
        <source>Page Outs</source>
        <translation>Salidas de página</translation>
    </message>
    <message>
        <source>Peak %@ of %@ cores</source>
        <translation>Pico %@ de %@ núcleos</translation>
    </message>
    <message>
        <source>Power</source>
        <translation>Potencia</translation>
    </message>
    <message>
        <source>Power Adapter</source>
        <translation>Adaptador de corriente</translation>
    </message>
    <message>
        <source>Pressure</source>
        <translation>Presión</translation>
    </message>
    <message>
        <source>Read</source>
        <translation>Lectura</translation>
    </message>
    <message>
        <source>Renderer</source>
        <translation>Renderizador</translation>
    </message>
    <message>
        <source>SWAP MEMORY</source>
        <translation>MEMORIA DE INTERCAMBIO</translation>
    </message>
    <message>
        <source>Status</source>
        <translation>Estado</translation>
    </message>
    <message>
        <source>TEMPERATURES</source>
        <translation>TEMPERATURAS</translation>
    </message>
    <message>
        <source>THERMAL STATE</source>
        <translation>ESTADO TÉRMICO</translation>
    </message>
    <message>
        <source>Temperature</source>
        <translation>Temperatura</translation>
    </message>
    <message>
        <source>Tiler</source>
        <translation>Tiler</translation>
    </message>
    <message>
        <source>Time Left</source>
        <translation>Tiempo restante</translation>
    </message>
    <message>
        <source>USAGE</source>
        <translation>USO</translation>
    </message>
    <message>
        <source>Unavailable</source>
        <translation>No disponible</translation>
    </message>
    <message>
        <source>Uptime</source>
        <translation>Tiempo activo</translation>
    </message>
    <message>
        <source>Used</source>
        <translation>Usado</translation>
    </message>
    <message>
        <source>User</source>
        <translation>Usuario</translation>
    </message>
    <message>
        <source>Voltage</source>
        <translation>Voltaje</translation>
    </message>
    <message>
        <source>Warning</source>
        <translation>Advertencia</translation>
    </message>
    <message>
        <source>Wired</source>
        <translation>Fija</translation>
    </message>
    <message>
        <source>Write</source>
        <translation>Escritura</translation>
    </message>
    <message>
        <source>Corvane Settings</source>
        <translation>Ajustes de Corvane</translation>
    </message>
    <message>
        <source>Meters</source>
        <translation>Indicadores</translation>
    </message>
    <message>
        <source>General</source>
        <translation>General</translation>
    </message>
    <message>
        <source>Updates</source>
        <translation>Actualizaciones</translation>
    </message>
    <message>
        <source>About</source>
        <translation>Acerca de</translation>
    </message>
    <message>
        <source>Corvane could not save your last change. It stays here and is saved with the next change that goes through.</source>
        <translation>Corvane no pudo guardar el último cambio. Se mantiene aquí y se guardará con el siguiente cambio que se guarde.</translation>
    </message>
    <message>
        <source>Menu Bar</source>
        <translation>Barra de menús</translation>
    </message>
    <message>
        <source>Drag, or press Alt+Up or Alt+Down, to reorder. Hidden meters keep their places.</source>
        <translation>Arrastre, o pulse Alt+Arriba o Alt+Abajo, para reordenar. Los indicadores ocultos conservan su lugar.</translation>
    </message>
    <message>
        <source>Readouts</source>
        <translation>Lecturas</translation>
    </message>
    <message>
        <source>Appearance</source>
        <translation>Apariencia</translation>
    </message>
    <message>
        <source>CPU graph</source>
        <translation>Gráfico de CPU</translation>
    </message>
    <message>
        <source>Shape</source>
        <translation>Forma</translation>
    </message>
    <message>
        <source>Labels</source>
        <translation>Etiquetas</translation>
    </message>
    <message>
        <source>Accents</source>
        <translation>Acentos</translation>
    </message>
    <message>
        <source>CPU fast cores</source>
        <translation>CPU, núcleos rápidos</translation>
    </message>
    <message>
        <source>Custom…</source>
        <translation>Personalizado…</translation>
    </message>
    <message>
        <source>Accent</source>
        <translation>Acento</translation>
    </message>
    <message>
        <source>Corvane</source>
        <translation>Corvane</translation>
    </message>
    <message>
        <source>Show Corvane in the menu bar</source>
        <translation>Mostrar Corvane en la barra de menús</translation>
    </message>
    <message>
        <source>Login</source>
        <translation>Inicio de sesión</translation>
    </message>
    <message>
        <source>Start Corvane at login</source>
        <translation>Abrir Corvane al iniciar sesión</translation>
    </message>
    <message>
        <source>Refresh every</source>
        <translation>Actualizar cada</translation>
    </message>
    <message>
        <source>Temperatures</source>
        <translation>Temperaturas</translation>
    </message>
    <message>
        <source>Light</source>
        <translation>Claro</translation>
    </message>
    <message>
        <source>Dark</source>
        <translation>Oscuro</translation>
    </message>
    <message>
        <source>Panel appearance</source>
        <translation>Apariencia de los paneles</translation>
    </message>
    <message>
        <source>Translucent</source>
        <translation>Translúcido</translation>
    </message>
    <message>
        <source>Opaque</source>
        <translation>Opaco</translation>
    </message>
    <message>
        <source>Panel background</source>
        <translation>Fondo de los paneles</translation>
    </message>
    <message>
        <source>Language</source>
        <translation>Idioma</translation>
    </message>
    <message>
        <source>Corvane restarts in the new language.</source>
        <translation>Corvane se reinicia en el nuevo idioma.</translation>
    </message>
    <message>
        <source>Check for updates automatically</source>
        <translation>Buscar actualizaciones automáticamente</translation>
    </message>
    <message>
        <source>Check Now</source>
        <translation>Buscar ahora</translation>
    </message>
    <message>
        <source>Corvane checks for updates while it runs from its bundle.</source>
        <translation>Corvane busca actualizaciones cuando se ejecuta desde su paquete.</translation>
    </message>
    <message>
        <source>This version</source>
        <translation>Esta versión</translation>
    </message>
    <message>
        <source>Corvane %1</source>
        <translation>Corvane %1</translation>
    </message>
    <message>
        <source>No update offered</source>
        <translation>No hay actualizaciones</translation>
    </message>
    <message>
        <source>A system monitor for the menu bar.</source>
        <translation>Un monitor del sistema para la barra de menús.</translation>
    </message>
    <message>
        <source>Version</source>
        <translation>Versión</translation>
    </message>
    <message>
        <source>Build</source>
        <translation>Compilación</translation>
    </message>
    <message>
        <source>Settings file</source>
        <translation>Archivo de ajustes</translation>
    </message>
    <message>
        <source>Documentation</source>
        <translation>Documentación</translation>
    </message>
    <message>
        <source>Read me</source>
        <translation>Léame</translation>
    </message>
    <message>
        <source>How readings are made on Linux</source>
        <translation>Cómo se obtienen las lecturas en Linux</translation>
    </message>
    <message>
        <source>Not saved</source>
        <translation>No se guarda</translation>
    </message>
    <message>
        <source>Off</source>
        <translation>Desactivado</translation>
    </message>
    <message>
        <source>Usage</source>
        <translation>Uso</translation>
    </message>
    <message>
        <source>Swap Used</source>
        <translation>Swap usado</translation>
    </message>
    <message>
        <source>Free Space</source>
        <translation>Espacio libre</translation>
    </message>
    <message>
        <source>Hottest Sensor</source>
        <translation>Sensor más caliente</translation>
    </message>
    <message>
        <source>GPU Temperature</source>
        <translation>Temperatura de la GPU</translation>
    </message>
    <message>
        <source>Fan Speed</source>
        <translation>Velocidad del ventilador</translation>
    </message>
    <message>
        <source>Bars</source>
        <translation>Barras</translation>
    </message>
    <message>
        <source>Wave</source>
        <translation>Onda</translation>
    </message>
    <message>
        <source>Compact</source>
        <translation>Compacto</translation>
    </message>
    <message>
        <source>Pill</source>
        <translation>Píldora</translation>
    </message>
    <message>
        <source>Square</source>
        <translation>Cuadrado</translation>
    </message>
    <message>
        <source>Icons</source>
        <translation>Iconos</translation>
    </message>
    <message>
        <source>Letters</source>
        <translation>Letras</translation>
    </message>
    <message>
        <source>Signal</source>
        <translation>Señal</translation>
    </message>
    <message>
        <source>Blue</source>
        <translation>Azul</translation>
    </message>
    <message>
        <source>Indigo</source>
        <translation>Índigo</translation>
    </message>
    <message>
        <source>Purple</source>
        <translation>Morado</translation>
    </message>
    <message>
        <source>Teal</source>
        <translation>Verde azulado</translation>
    </message>
    <message>
        <source>Pine</source>
        <translation>Pino</translation>
    </message>
    <message>
        <source>Amber</source>
        <translation>Ámbar</translation>
    </message>
    <message>
        <source>Graphite</source>
        <translation>Grafito</translation>
    </message>
    <message>
        <source>Custom</source>
        <translation>Personalizado</translation>
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
