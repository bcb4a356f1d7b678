<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="es" sourcelanguage="en">
<context>
    <name>Brevok</name>
    <message>
        <source>OK</source>
        <translation>Aceptar</translation>
    </message>
    <message>
        <source>Another copy of Tolvane Brevok application is already running.</source>
        <translation>Ya se está ejecutando otra copia de Tolvane Brevok.</translation>
    </message>
    <message>
        <source>Only one copy can be run at a time. Quit running Tolvane Brevok to run this copy of Tolvane Brevok application.</source>
        <translation>Solo se puede ejecutar una copia a la vez. Salga de la copia de Tolvane Brevok en ejecución para abrir esta.</translation>
    </message>
    <message>
        <source>Tolvane Brevok cannot store its data</source>
        <translation>Tolvane Brevok no puede guardar sus datos</translation>
    </message>
    <message>
        <source>The stored data of Tolvane Brevok was damaged</source>
        <translation>Los datos guardados de Tolvane Brevok estaban dañados</translation>
    </message>
    <message>
        <source>Failed to update Products data</source>
        <translation>No se pudieron actualizar los datos de los productos</translation>
    </message>
    <message>
        <source>Failed to update Plug-Ins data</source>
        <translation>No se pudieron actualizar los datos de los plug-ins</translation>
    </message>
    <message>
        <source>Installer detected one or more unfinished actions. Do you want to finish or discard those actions?</source>
        <translation>El instalador detectó una o más acciones sin terminar. ¿Desea terminar o descartar esas acciones?</translation>
    </message>
    <message>
        <source>Tolvane Brevok application probably crashed, or was forced to quit. Unfinished install/uninstall actions are left overs from previous session.</source>
        <translation>Es probable que Tolvane Brevok se cerrara de forma inesperada o que se forzara su cierre. Quedan instalaciones o desinstalaciones sin terminar de la sesión anterior.</translation>
    </message>
    <message>
        <source>Discard Actions</source>
        <translation>Descartar acciones</translation>
    </message>
    <message>
        <source>Finish Actions</source>
        <translation>Terminar acciones</translation>
    </message>
    <message>
        <source>Unable to contact the Tolvane Brevok server for %1 days.</source>
        <translation>No se puede contactar con el servidor de Tolvane Brevok desde hace %1 días.</translation>
    </message>
    <message>
        <source>You&apos;re up-to-date!</source>
        <translation>¡Todo está al día!</translation>
    </message>
    <message>
        <source>There are no new Plug-In updates available.</source>
        <translation>No hay nuevas actualizaciones de plug-ins.</translation>
    </message>
    <message>
        <source>Plug-In update available!</source>
        <translation>¡Actualización de plug-in disponible!</translation>
    </message>
    <message>
        <source>%1 Plug-In update is available.</source>
        <translation>Hay una actualización disponible del plug-in %1.</translation>
    </message>
    <message>
        <source>Plug-In updates available!</source>
        <translation>¡Actualizaciones de plug-ins disponibles!</translation>
    </message>
    <message>
        <source>You have %1 Plug-In updates available.</source>
        <translation>Hay %1 actualizaciones de plug-ins disponibles.</translation>
    </message>
    <message>
        <source>Incorrect input to installPlugin:</source>
        <translation>Entrada incorrecta para installPlugin:</translation>
    </message>
    <message>
        <source>Incorrect input to removeItemAtPath:</source>
        <translation>Entrada incorrecta para removeItemAtPath:</translation>
    </message>
    <message>
        <source>The workspace could not be installed at %1.</source>
        <translation>No se pudo instalar el espacio de trabajo en %1.</translation>
    </message>
    <message>
        <source>Failed to install &apos;%1.InDesignPlugin&apos;!</source>
        <translation>¡No se pudo instalar «%1.InDesignPlugin»!</translation>
    </message>
    <message>
        <source>Multiple errors have occured. Please contact Tolvane support.</source>
        <translation>Se produjeron varios errores. Póngase en contacto con el soporte de Tolvane.</translation>
    </message>
    <message>
        <source>Error: %1</source>
        <translation>Error: %1</translation>
    </message>
    <message>
        <source>The folder %1 is not writable.</source>
        <translation>No se puede escribir en la carpeta %1.</translation>
    </message>
    <message>
        <source>Failed to download %1, from %2</source>
        <translation>No se pudo descargar %1 desde %2</translation>
    </message>
    <message>
        <source>To take advantage of newly installed Plug-Ins, restart %1.

Do you want to quit %1 now or do it yourself later?</source>
        <translation>Para usar los plug-ins recién instalados, reinicie %1.

¿Desea salir de %1 ahora o hacerlo usted más tarde?</translation>
    </message>
    <message>
        <source>Quit %1</source>
        <translation>Salir de %1</translation>
    </message>
    <message>
        <source>Continue</source>
        <translation>Continuar</translation>
    </message>
    <message>
        <source>Adobe %1 %2 is running.</source>
        <translation>Adobe %1 %2 se está ejecutando.</translation>
    </message>
    <message>
        <source>Removing Plug-Ins from running Adobe %1 can lead to unexpected behaviour, you should quit %1 before proceeding.</source>
        <translation>Eliminar plug-ins mientras se ejecuta Adobe %1 puede causar un comportamiento inesperado; salga de %1 antes de continuar.</translation>
    </message>
    <message>
        <source>Could not create the folder &quot;%1&quot;</source>
        <translation>No se pudo crear la carpeta «%1»</translation>
    </message>
    <message>
        <source>Could not remove &quot;%1&quot;</source>
        <translation>No se pudo eliminar «%1»</translation>
    </message>
    <message>
        <source>Could not copy &quot;%1&quot; to &quot;%2&quot;</source>
        <translation>No se pudo copiar «%1» en «%2»</translation>
    </message>
    <message>
        <source>Could not copy &quot;%1&quot; to &quot;%2&quot; (at &quot;%3&quot;)</source>
        <translation>No se pudo copiar «%1» en «%2» (en «%3»)</translation>
    </message>
    <message>
        <source>Could not open the archive &quot;%1&quot;</source>
        <translation>No se pudo abrir el archivo comprimido «%1»</translation>
    </message>
    <message>
        <source>Could not open the folder &quot;%1&quot;</source>
        <translation>No se pudo abrir la carpeta «%1»</translation>
    </message>
    <message>
        <source>Could not change the owner and permissions of &quot;%1&quot;</source>
        <translation>No se pudieron cambiar el propietario y los permisos de «%1»</translation>
    </message>
    <message>
        <source>Could not unpack &quot;%1&quot; into &quot;%2&quot;</source>
        <translation>No se pudo extraer «%1» en «%2»</translation>
    </message>
    <message>
        <source>the process that speaks HTTP has ended</source>
        <translation>el proceso que habla HTTP ha terminado</translation>
    </message>
    <message>
        <source>it has more than %1 entries</source>
        <translation>tiene más de %1 entradas</translation>
    </message>
    <message>
        <source>an entry has no name</source>
        <translation>una entrada no tiene nombre</translation>
    </message>
    <message>
        <source>the name of the entry is not relative</source>
        <translation>el nombre de la entrada no es relativo</translation>
    </message>
    <message>
        <source>the name of the entry is too long</source>
        <translation>el nombre de la entrada es demasiado largo</translation>
    </message>
    <message>
        <source>the entry is encrypted</source>
        <translation>la entrada está cifrada</translation>
    </message>
    <message>
        <source>it has too many links</source>
        <translation>tiene demasiados enlaces</translation>
    </message>
    <message>
        <source>the entry is neither a file nor a folder</source>
        <translation>la entrada no es ni un archivo ni una carpeta</translation>
    </message>
    <message>
        <source>no space left on the disk</source>
        <translation>no queda espacio en el disco</translation>
    </message>
    <message>
        <source>no permission to change the folder</source>
        <translation>sin permiso para modificar la carpeta</translation>
    </message>
    <message>
        <source>the disk is write-protected</source>
        <translation>el disco está protegido contra escritura</translation>
    </message>
    <message>
        <source>the disk reports an error</source>
        <translation>el disco comunica un error</translation>
    </message>
    <message>
        <source>the archive cannot be read</source>
        <translation>no se puede leer el archivo comprimido</translation>
    </message>
    <message>
        <source>the archive is refused: %1</source>
        <translation>se rechaza el archivo comprimido: %1</translation>
    </message>
    <message>
        <source>the archive is damaged</source>
        <translation>el archivo comprimido está dañado</translation>
    </message>
    <message>
        <source>the entry occurs twice</source>
        <translation>la entrada aparece dos veces</translation>
    </message>
    <message>
        <source>The downloaded file cannot be saved: %1</source>
        <translation>No se puede guardar el archivo descargado: %1</translation>
    </message>
    <message>
        <source>Server responded with HTTP code: %1.</source>
        <translation>El servidor respondió con el código HTTP: %1.</translation>
    </message>
    <message>
        <source>The download is longer than the expected %1 bytes.</source>
        <translation>La descarga supera los %1 bytes esperados.</translation>
    </message>
    <message>
        <source>The download has %1 of the expected %2 bytes.</source>
        <translation>La descarga tiene %1 de los %2 bytes esperados.</translation>
    </message>
    <message>
        <source>Network is unreachable. Is your internet connection down?</source>
        <translation>No se puede acceder a la red. ¿Se interrumpió su conexión a Internet?</translation>
    </message>
    <message>
        <source>Connection Error</source>
        <translation>Error de conexión</translation>
    </message>
    <message>
        <source>Authentication Error</source>
        <translation>Error de autenticación</translation>
    </message>
    <message>
        <source>There is critical update of Tolvane Brevok application.</source>
        <translation>Hay una actualización crítica de Tolvane Brevok.</translation>
    </message>
    <message>
        <source>Unexpected server response.</source>
        <translation>Respuesta inesperada del servidor.</translation>
    </message>
    <message>
        <source>The server redirected the request to another server.</source>
        <translation>El servidor redirigió la solicitud a otro servidor.</translation>
    </message>
    <message>
        <source>The server redirected the request in a way that would lose it.</source>
        <translation>El servidor redirigió la solicitud de un modo en que se perdería.</translation>
    </message>
    <message>
        <source>The server redirected the request to an address that is not secure.</source>
        <translation>El servidor redirigió la solicitud a una dirección que no es segura.</translation>
    </message>
    <message>
        <source>The server sent more data than expected.</source>
        <translation>El servidor envió más datos de los esperados.</translation>
    </message>
    <message>
        <source>Wrong user name or password.</source>
        <translation>Nombre de usuario o contraseña incorrectos.</translation>
    </message>
    <message>
        <source>Insufficient rights to access Tolvane Brevok verification server.</source>
        <translation>Permisos insuficientes para acceder al servidor de verificación de Tolvane Brevok.</translation>
    </message>
    <message>
        <source>The requested resource could not be found.
Server might be temporarily inaccessible.</source>
        <translation>No se encontró el recurso solicitado.
Es posible que el servidor no esté accesible temporalmente.</translation>
    </message>
    <message>
        <source>continue</source>
        <translation>continuar</translation>
    </message>
    <message>
        <source>switching protocols</source>
        <translation>cambio de protocolo</translation>
    </message>
    <message>
        <source>no error</source>
        <translation>sin errores</translation>
    </message>
    <message>
        <source>created</source>
        <translation>creado</translation>
    </message>
    <message>
        <source>accepted</source>
        <translation>aceptado</translation>
    </message>
    <message>
        <source>non-authoritative information</source>
        <translation>información no autoritativa</translation>
    </message>
    <message>
        <source>no content</source>
        <translation>sin contenido</translation>
    </message>
    <message>
        <source>reset content</source>
        <translation>restablecer contenido</translation>
    </message>
    <message>
        <source>partial content</source>
        <translation>contenido parcial</translation>
    </message>
    <message>
        <source>multiple choices</source>
        <translation>varias opciones</translation>
    </message>
    <message>
        <source>moved permanently</source>
        <translation>movido permanentemente</translation>
    </message>
    <message>
        <source>found</source>
        <translation>encontrado</translation>
    </message>
    <message>
        <source>see other</source>
        <translation>ver otra dirección</translation>
    </message>
    <message>
        <source>not modified</source>
        <translation>sin cambios</translation>
    </message>
    <message>
        <source>needs proxy</source>
        <translation>necesita proxy</translation>
    </message>
    <message>
        <source>temporarily redirected</source>
        <translation>redirigido temporalmente</translation>
    </message>
    <message>
        <source>bad request</source>
        <translation>solicitud incorrecta</translation>
    </message>
    <message>
        <source>unauthorized</source>
        <translation>no autorizado</translation>
    </message>
    <message>
        <source>payment required</source>
        <translation>pago necesario</translation>
    </message>
    <message>
        <source>forbidden</source>
        <translation>prohibido</translation>
    </message>
    <message>
        <source>not found</source>
        <translation>no encontrado</translation>
    </message>
    <message>
        <source>method not allowed</source>
        <translation>método no permitido</translation>
    </message>
    <message>
        <source>unacceptable</source>
        <translation>inaceptable</translation>
    </message>
    <message>
        <source>proxy authentication required</source>
        <translation>autenticación del proxy necesaria</translation>
    </message>
    <message>
        <source>request timed out</source>
        <translation>tiempo de la solicitud agotado</translation>
    </message>
    <message>
        <source>conflict</source>
        <translation>conflicto</translation>
    </message>
    <message>
        <source>no longer exists</source>
        <translation>ya no existe</translation>
    </message>
    <message>
        <source>length required</source>
        <translation>longitud necesaria</translation>
    </message>
    <message>
        <source>precondition failed</source>
        <translation>condición previa no cumplida</translation>
    </message>
    <message>
        <source>request too large</source>
        <translation>solicitud demasiado grande</translation>
    </message>
    <message>
        <source>requested URL too long</source>
        <translation>URL solicitada demasiado larga</translation>
    </message>
    <message>
        <source>unsupported media type</source>
        <translation>tipo de medio no admitido</translation>
    </message>
    <message>
        <source>requested range not satisfiable</source>
        <translation>el intervalo solicitado no se puede satisfacer</translation>
    </message>
    <message>
        <source>expectation failed</source>
        <translation>expectativa no cumplida</translation>
    </message>
    <message>
        <source>internal server error</source>
        <translation>error interno del servidor</translation>
    </message>
    <message>
        <source>unimplemented</source>
        <translation>no implementado</translation>
    </message>
    <message>
        <source>bad gateway</source>
        <translation>puerta de enlace incorrecta</translation>
    </message>
    <message>
        <source>service unavailable</source>
        <translation>servicio no disponible</translation>
    </message>
    <message>
        <source>gateway timed out</source>
        <translation>tiempo de la puerta de enlace agotado</translation>
    </message>
    <message>
        <source>unsupported version</source>
        <translation>versión no admitida</translation>
    </message>
    <message>
        <source>informational</source>
        <translation>información</translation>
    </message>
    <message>
        <source>success</source>
        <translation>éxito</translation>
    </message>
    <message>
        <source>redirected</source>
        <translation>redirigido</translation>
    </message>
    <message>
        <source>client error</source>
        <translation>error del cliente</translation>
    </message>
    <message>
        <source>server error</source>
        <translation>error del servidor</translation>
    </message>
    <message>
        <source>Invalid session Id. You have been logged out!
Please try to sign-in again.</source>
        <translation>El identificador de sesión no es válido. ¡Se cerró su sesión!
Vuelva a iniciar sesión.</translation>
    </message>
    <message>
        <source>Security Violation Error. You have been logged out!
Please try to sign-in again.</source>
        <translation>Error: infracción de seguridad. ¡Se cerró su sesión!
Vuelva a iniciar sesión.</translation>
    </message>
    <message>
        <source>Internal Server Error. Please contact Tolvane support.</source>
        <translation>Error interno del servidor. Póngase en contacto con el soporte de Tolvane.</translation>
    </message>
    <message>
        <source>The request timed out.</source>
        <translation>Se agotó el tiempo de la solicitud.</translation>
    </message>
    <message>
        <source>A server with the specified hostname could not be found.</source>
        <translation>No se encontró ningún servidor con el nombre indicado.</translation>
    </message>
    <message>
        <source>Could not connect to the server.</source>
        <translation>No se pudo conectar con el servidor.</translation>
    </message>
    <message>
        <source>Could not connect to the proxy server.</source>
        <translation>No se pudo conectar con el servidor proxy.</translation>
    </message>
    <message>
        <source>The network connection was lost.</source>
        <translation>Se perdió la conexión de red.</translation>
    </message>
    <message>
        <source>Too many HTTP redirects.</source>
        <translation>Demasiadas redirecciones HTTP.</translation>
    </message>
    <message>
        <source>The transfer failed: %1</source>
        <translation>La transferencia falló: %1</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancelar</translation>
    </message>
    <message>
        <source>Version %1 (%2, %3)</source>
        <translation>Versión %1 (%2, %3)</translation>
    </message>
    <message>
        <source>About %1</source>
        <translation>Acerca de %1</translation>
    </message>
    <message>
        <source>1 update available</source>
        <translation>1 actualización disponible</translation>
    </message>
    <message>
        <source>%1 updates available</source>
        <translation>%1 actualizaciones disponibles</translation>
    </message>
    <message>
        <source>Remove %1</source>
        <translation>Eliminar %1</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Eliminar</translation>
    </message>
    <message>
        <source>More about this Plug-In</source>
        <translation>Más sobre este plug-in</translation>
    </message>
    <message>
        <source>%1 is in progress</source>
        <translation>Procesando %1</translation>
    </message>
    <message>
        <source>Download of %1</source>
        <translation>Descarga de %1</translation>
    </message>
    <message>
        <source>%1 %2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>Check for Plug-In Updates</source>
        <translation>Buscar actualizaciones de plug-ins</translation>
    </message>
    <message>
        <source>Check for Application Update…</source>
        <translation>Buscar actualización de la aplicación…</translation>
    </message>
    <message>
        <source>My Account</source>
        <translation>Mi cuenta</translation>
    </message>
    <message>
        <source>Preferences…</source>
        <translation>Preferencias…</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Ayuda</translation>
    </message>
    <message>
        <source>Report a Bug…</source>
        <translation>Informar de un error…</translation>
    </message>
    <message>
        <source>About Tolvane Brevok</source>
        <translation>Acerca de Tolvane Brevok</translation>
    </message>
    <message>
        <source>Quit…</source>
        <translation>Salir…</translation>
    </message>
    <message>
        <source>Tolvane Brevok</source>
        <translation>Tolvane Brevok</translation>
    </message>
    <message>
        <source>Are you sure you want to quit</source>
        <translation>¿Seguro que desea salir?</translation>
    </message>
    <message>
        <source>Tolvane Brevok needs to be running to keep the Plug-Ins active.</source>
        <translation>Tolvane Brevok debe estar en ejecución para que los plug-ins sigan activos.</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Salir</translation>
    </message>
    <message>
        <source>Preferences</source>
        <translation>Preferencias</translation>
    </message>
    <message>
        <source>Pages</source>
        <translation>Páginas</translation>
    </message>
    <message>
        <source>Account</source>
        <translation>Cuenta</translation>
    </message>
    <message>
        <source>Targets</source>
        <translation>Destinos</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Ajustes</translation>
    </message>
    <message>
        <source>&amp;Password:</source>
        <translation>&amp;Contraseña:</translation>
    </message>
    <message>
        <source>Create Account…</source>
        <translation>Crear cuenta…</translation>
    </message>
    <message>
        <source>Start at &amp;login</source>
        <translation>&amp;Abrir al iniciar sesión en el equipo</translation>
    </message>
    <message>
        <source>Show &amp;notifications</source>
        <translation>Mostrar &amp;notificaciones</translation>
    </message>
    <message>
        <source>&amp;Check for new versions of this application</source>
        <translation>&amp;Buscar nuevas versiones de esta aplicación</translation>
    </message>
    <message>
        <source>Write a &amp;detailed log</source>
        <translation>Guardar un registro &amp;detallado</translation>
    </message>
    <message>
        <source>&amp;Add…</source>
        <translation>&amp;Añadir…</translation>
    </message>
    <message>
        <source>&amp;Remove</source>
        <translation>&amp;Eliminar</translation>
    </message>
    <message>
        <source>Add Target</source>
        <translation>Añadir destino</translation>
    </message>
    <message>
        <source>Chose Plug-Ins directory inside Adobe InCopy/InDesign application folder.</source>
        <translation>Elija la carpeta Plug-Ins dentro de la carpeta de la aplicación Adobe InCopy/InDesign.</translation>
    </message>
    <message>
        <source>&amp;Folder:</source>
        <translation>&amp;Carpeta:</translation>
    </message>
    <message>
        <source>&amp;Browse…</source>
        <translation>&amp;Examinar…</translation>
    </message>
    <message>
        <source>&amp;Application:</source>
        <translation>&amp;Aplicación:</translation>
    </message>
    <message>
        <source>&amp;Version:</source>
        <translation>&amp;Versión:</translation>
    </message>
    <message>
        <source>Sign Out</source>
        <translation>Cerrar sesión</translation>
    </message>
    <message>
        <source>Sign In</source>
        <translation>Iniciar sesión</translation>
    </message>
    <message>
        <source>Contacting the service…</source>
        <translation>Contactando con el servicio…</translation>
    </message>
    <message>
        <source>Signed in as %1.</source>
        <translation>Sesión iniciada como %1.</translation>
    </message>
    <message>
        <source>Not signed in.</source>
        <translation>Sesión no iniciada.</translation>
    </message>
    <message>
        <source>Checking for Updates</source>
        <translation>Búsqueda de actualizaciones</translation>
    </message>
    <message>
        <source>Checking for updates…</source>
        <translation>Buscando actualizaciones…</translation>
    </message>
    <message>
        <source>Downloading %1 of %2 GB</source>
        <translation>Descargando %1 de %2 GB</translation>
    </message>
    <message>
        <source>Downloading %1 GB</source>
        <translation>Descargando %1 GB</translation>
    </message>
    <message>
        <source>Downloading %1 of %2 MB</source>
        <translation>Descargando %1 de %2 MB</translation>
    </message>
    <message>
        <source>Downloading %1 MB</source>
        <translation>Descargando %1 MB</translation>
    </message>
    <message>
        <source>Install</source>
        <translation>Instalar</translation>
    </message>
    <message>
        <source>Update</source>
        <translation>Actualizar</translation>
    </message>
    <message>
        <source>Up To Date</source>
        <translation>Al día</translation>
    </message>
    <message>
        <source>Partly installed</source>
        <translation>Instalado en parte</translation>
    </message>
    <message>
        <source>Partly outdated</source>
        <translation>Desactualizado en parte</translation>
    </message>
    <message>
        <source>Working…</source>
        <translation>En curso…</translation>
    </message>
    <message>
        <source>Installing…</source>
        <translation>Instalando…</translation>
    </message>
    <message>
        <source>Sign in</source>
        <translation>Iniciar sesión</translation>
    </message>
    <message>
        <source>&amp;Password</source>
        <translation>&amp;Contraseña</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>Contraseña</translation>
    </message>
    <message>
        <source>Contacting the service</source>
        <translation>Contactando con el servicio</translation>
    </message>
    <message>
        <source>Options</source>
        <translation>Opciones</translation>
    </message>
    <message>
        <source>Plug-Ins</source>
        <translation>Plug-ins</translation>
    </message>
    <message>
        <source>You are signed out</source>
        <translation>No ha iniciado sesión</translation>
    </message>
    <message>
        <source>Sign In…</source>
        <translation>Iniciar sesión…</translation>
    </message>
    <message>
        <source>No network connection</source>
        <translation>Sin conexión de red</translation>
    </message>
    <message>
        <source>Connect to the internet to install and update Plug-Ins.</source>
        <translation>Conéctese a Internet para instalar y actualizar plug-ins.</translation>
    </message>
    <message>
        <source>Try Again</source>
        <translation>Reintentar</translation>
    </message>
    <message>
        <source>Choose Applications…</source>
        <translation>Elegir aplicaciones…</translation>
    </message>
    <message>
        <source>Loading Plug-Ins…</source>
        <translation>Cargando plug-ins…</translation>
    </message>
    <message>
        <source>No Plug-Ins yet</source>
        <translation>Aún no hay plug-ins</translation>
    </message>
    <message>
        <source>Check Again</source>
        <translation>Comprobar de nuevo</translation>
    </message>
    <message>
        <source>Not signed in</source>
        <translation>Sesión no iniciada</translation>
    </message>
    <message>
        <source>Signed in</source>
        <translation>Sesión iniciada</translation>
    </message>
    <message>
        <source>1 update</source>
        <translation>1 actualización</translation>
    </message>
    <message>
        <source>%1 updates</source>
        <translation>%1 actualizaciones</translation>
    </message>
    <message>
        <source>Other…</source>
        <translation>Otra…</translation>
    </message>
    <message>
        <source>None</source>
        <translation>Ninguna</translation>
    </message>
    <message>
        <source>Chose Plug-Ins directory</source>
        <translation>Elegir la carpeta Plug-Ins</translation>
    </message>
    <message>
        <source>There is no folder &apos;%1&apos;.</source>
        <translation>No existe la carpeta «%1».</translation>
    </message>
    <message>
        <source>Checking the folder…</source>
        <translation>Comprobando la carpeta…</translation>
    </message>
    <message>
        <source>Invalid Plug-Ins path selected!</source>
        <translation>¡La ruta seleccionada no es una carpeta Plug-Ins válida!</translation>
    </message>
    <message>
        <source>The path you specified doesn&apos;t look like a valid Adobe InDesign Plug-Ins folder. Do you want to use it anyway?</source>
        <translation>La ruta indicada no parece una carpeta Plug-Ins válida de Adobe InDesign. ¿Desea usarla de todos modos?</translation>
    </message>
    <message>
        <source>Enable %1</source>
        <translation>Activar %1</translation>
    </message>
    <message>
        <source>Enabled</source>
        <translation>Activado</translation>
    </message>
    <message>
        <source>Plug-Ins folder</source>
        <translation>Carpeta Plug-Ins</translation>
    </message>
    <message>
        <source>Checking the connection…</source>
        <translation>Comprobando la conexión…</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Cerrar</translation>
    </message>
    <message>
        <source>Failed to send error report</source>
        <translation>No se pudo enviar el informe de error</translation>
    </message>
    <message>
        <source>Gathering the report…</source>
        <translation>Reuniendo los datos del informe…</translation>
    </message>
    <message>
        <source>Invalid email address!</source>
        <translation>¡La dirección de correo electrónico no es válida!</translation>
    </message>
    <message>
        <source>Missing email address!</source>
        <translation>¡Falta la dirección de correo electrónico!</translation>
    </message>
    <message>
        <source>Missing problem description!</source>
        <translation>¡Falta la descripción del problema!</translation>
    </message>
    <message>
        <source>Please contact Tolvane support.</source>
        <translation>Póngase en contacto con el soporte de Tolvane.</translation>
    </message>
    <message>
        <source>Please describe the problem and what were you doing when the problem came up.</source>
        <translation>Describa el problema y lo que estaba haciendo cuando se produjo.</translation>
    </message>
    <message>
        <source>Please enter a valid email address so we can respond to your message.</source>
        <translation>Introduzca una dirección de correo electrónico válida para que podamos responder a su mensaje.</translation>
    </message>
    <message>
        <source>Received %1 bytes (%2)

%3</source>
        <translation>Se recibieron %1 bytes (%2)

%3</translation>
    </message>
    <message>
        <source>Report a Bug</source>
        <translation>Informar de un error</translation>
    </message>
    <message>
        <source>Send</source>
        <translation>Enviar</translation>
    </message>
    <message>
        <source>Sending the report…</source>
        <translation>Enviando el informe…</translation>
    </message>
    <message>
        <source>Server response: %1

%2</source>
        <translation>Respuesta del servidor: %1

%2</translation>
    </message>
    <message>
        <source>Show what will be sent</source>
        <translation>Mostrar lo que se enviará</translation>
    </message>
    <message>
        <source>Thank you for reporting this issue.</source>
        <translation>Gracias por informar de este problema.</translation>
    </message>
    <message>
        <source>Tolvane Brevok servers are unreachable.</source>
        <translation>No se puede acceder a los servidores de Tolvane Brevok.</translation>
    </message>
    <message>
        <source>Tolvane support team will contact you shortly.</source>
        <translation>El equipo de soporte de Tolvane se pondrá en contacto con usted en breve.</translation>
    </message>
    <message>
        <source>Unknown</source>
        <translation>Desconocido</translation>
    </message>
    <message>
        <source>Unknown connection error.</source>
        <translation>Error de conexión desconocido.</translation>
    </message>
    <message>
        <source>What went &amp;wrong, and what were you doing when the problem came up?</source>
        <translation>¿&amp;Qué falló y qué estaba haciendo cuando se produjo el problema?</translation>
    </message>
    <message>
        <source>What will be sent</source>
        <translation>Lo que se enviará</translation>
    </message>
    <message>
        <source>Software Update</source>
        <translation>Actualización de software</translation>
    </message>
    <message>
        <source>Release notes</source>
        <translation>Notas de la versión</translation>
    </message>
    <message>
        <source>A new version of Tolvane Brevok is available.</source>
        <translation>Hay una nueva versión de Tolvane Brevok disponible.</translation>
    </message>
    <message>
        <source>Version %1 is available; you have version %2. Would you like to install it now?</source>
        <translation>La versión %1 está disponible; tiene la versión %2. ¿Desea instalarla ahora?</translation>
    </message>
    <message>
        <source>Install Update</source>
        <translation>Instalar actualización</translation>
    </message>
    <message>
        <source>Remind Me Later</source>
        <translation>Recordármelo más tarde</translation>
    </message>
    <message>
        <source>Skip This Version</source>
        <translation>Omitir esta versión</translation>
    </message>
    <message>
        <source>Hide</source>
        <translation>Ocultar</translation>
    </message>
    <message>
        <source>Downloading version %1…</source>
        <translation>Descargando la versión %1…</translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <translation>%1 de %2</translation>
    </message>
    <message>
        <source>Verifying version %1…</source>
        <translation>Verificando la versión %1…</translation>
    </message>
    <message>
        <source>Installing version %1…</source>
        <translation>Instalando la versión %1…</translation>
    </message>
    <message>
        <source>The system may ask for an administrator's password.</source>
        <translation>Es posible que el sistema pida la contraseña de un administrador.</translation>
    </message>
    <message>
        <source>Version %1 is installed.</source>
        <translation>La versión %1 está instalada.</translation>
    </message>
    <message>
        <source>It will be used the next time Tolvane Brevok starts.</source>
        <translation>Se usará la próxima vez que se inicie Tolvane Brevok.</translation>
    </message>
    <message>
        <source>Version %1 was not installed.</source>
        <translation>La versión %1 no se instaló.</translation>
    </message>
    <message>
        <source>Tolvane Brevok is up to date.</source>
        <translation>Tolvane Brevok está al día.</translation>
    </message>
    <message>
        <source>The description of available updates cannot be read.</source>
        <translation>No se puede leer la descripción de las actualizaciones disponibles.</translation>
    </message>
    <message>
        <source>Version %1 is offered at an address that is not secure. It cannot be installed.</source>
        <translation>La versión %1 se ofrece en una dirección que no es segura. No se puede instalar.</translation>
    </message>
    <message>
        <source>Version %1 is offered without a valid signature. It cannot be installed.</source>
        <translation>La versión %1 se ofrece sin una firma válida. No se puede instalar.</translation>
    </message>
    <message>
        <source>Version %1 is offered without a valid size. It cannot be installed.</source>
        <translation>La versión %1 se ofrece sin un tamaño válido. No se puede instalar.</translation>
    </message>
    <message>
        <source>The folder for the update cannot be used: %1</source>
        <translation>No se puede usar la carpeta de la actualización: %1</translation>
    </message>
    <message>
        <source>The downloaded file cannot be read: %1</source>
        <translation>No se puede leer el archivo descargado: %1</translation>
    </message>
    <message>
        <source>The downloaded update is not version %1 of Tolvane Brevok. It was not installed, and the file was removed.</source>
        <translation>La actualización descargada no es la versión %1 de Tolvane Brevok. No se instaló y el archivo se eliminó.</translation>
    </message>
    <message>
        <source>This copy cannot update itself. You can get the new version at %1.</source>
        <translation>Esta copia no puede actualizarse por sí misma. Puede obtener la nueva versión en %1.</translation>
    </message>
    <message>
        <source>The downloaded update is not signed by the maker of Tolvane Brevok. It was not installed, and the file was removed.</source>
        <translation>La actualización descargada no está firmada por el desarrollador de Tolvane Brevok. No se instaló y el archivo se eliminó.</translation>
    </message>
    <message>
        <source>The installation was cancelled.</source>
        <translation>Se canceló la instalación.</translation>
    </message>
    <message>
        <source>Could not write &quot;%1&quot;</source>
        <translation>No se pudo escribir «%1»</translation>
    </message>
    <message>
        <source>%1 (and %2 more)</source>
        <translation>%1 (y %2 más)</translation>
    </message>
    <message>
        <source>%1 is running</source>
        <translation>%1 se está ejecutando</translation>
    </message>
    <message>
        <source>another package needs it</source>
        <translation>otro paquete lo necesita</translation>
    </message>
    <message>
        <source>it is up to date</source>
        <translation>está al día</translation>
    </message>
    <message>
        <source>Tolvane Brevok cannot read its stored data.</source>
        <translation>Tolvane Brevok no puede leer sus datos guardados.</translation>
    </message>
    <message>
        <source>The check for Plug-In updates failed</source>
        <translation>No se pudieron buscar actualizaciones de los plug-ins</translation>
    </message>
    <message>
        <source>Web Page</source>
        <translation>Página web</translation>
    </message>
    <message>
        <source>No browser could be started. This is the address of the page:</source>
        <translation>No se pudo iniciar ningún navegador. Esta es la dirección de la página:</translation>
    </message>
    <message>
        <source>Address</source>
        <translation>Dirección</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Copiar</translation>
    </message>
    <message>
        <source>Tolvane Brevok installs your Plug-Ins in InDesign and InCopy and keeps them up to date: sign in with your account to begin.</source>
        <translation>Tolvane Brevok instala sus plug-ins en InDesign e InCopy y los mantiene al día: inicie sesión con su cuenta para empezar.</translation>
    </message>
    <message>
        <source>The setting could not be changed</source>
        <translation>No se pudo cambiar el ajuste</translation>
    </message>
    <message>
        <source>not installed</source>
        <translation>no instalado</translation>
    </message>
    <message>
        <source>update available</source>
        <translation>actualización disponible</translation>
    </message>
    <message>
        <source>up to date</source>
        <translation>al día</translation>
    </message>
    <message>
        <source>Remove %1?</source>
        <translation>¿Eliminar %1?</translation>
    </message>
    <message>
        <source>It is removed from all your applications.</source>
        <translation>Se eliminará de todas sus aplicaciones.</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Detener</translation>
    </message>
    <message>
        <source>Update All</source>
        <translation>Actualizar todo</translation>
    </message>
    <message>
        <source>Stop after the current Plug-In</source>
        <translation>Detener después del plug-in actual</translation>
    </message>
    <message>
        <source>Stopping after the current Plug-In…</source>
        <translation>Se detendrá después del plug-in actual…</translation>
    </message>
    <message>
        <source>Updating %1 of %2…</source>
        <translation>Actualizando %1 de %2…</translation>
    </message>
    <message>
        <source>Search Plug-Ins</source>
        <translation>Buscar plug-ins</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>Buscar</translation>
    </message>
    <message>
        <source>No Plug-In has such a name.</source>
        <translation>Ningún plug-in se llama así.</translation>
    </message>
    <message>
        <source>&amp;Undo</source>
        <translation>&amp;Deshacer</translation>
    </message>
    <message>
        <source>Removed %1.</source>
        <translation>Se eliminó %1.</translation>
    </message>
    <message>
        <source>Removed %1 targets.</source>
        <translation>Se eliminaron %1 destinos.</translation>
    </message>
    <message>
        <source>'%1' is already in the list.</source>
        <translation>«%1» ya está en la lista.</translation>
    </message>
    <message>
        <source>No known version of InDesign or InCopy stands beside this folder. Choose the application and its version.</source>
        <translation>Junto a esta carpeta no hay ninguna versión conocida de InDesign o InCopy. Elija la aplicación y su versión.</translation>
    </message>
    <message>
        <source>Used by scheduled updates, which are not set up on this computer.</source>
        <translation>Se usa en las actualizaciones programadas, que no están configuradas en este equipo.</translation>
    </message>
    <message>
        <source>Changes are kept in memory and stored as soon as possible. Reason: %1</source>
        <translation>Los cambios quedan en la memoria y se guardarán en cuanto sea posible. Motivo: %1</translation>
    </message>
    <message>
        <source>Everything that could be read is in use. The damaged file was kept as %1.</source>
        <translation>Se usa todo lo que se pudo leer. El archivo dañado se conservó como %1.</translation>
    </message>
    <message>
        <source>The folder %1 could not be created.</source>
        <translation>No se pudo crear la carpeta %1.</translation>
    </message>
    <message>
        <source>The plug-in name &quot;%1&quot; cannot be used as a file name.</source>
        <translation>El nombre de plug-in «%1» no se puede usar como nombre de archivo.</translation>
    </message>
    <message>
        <source>an entry is larger than its stated size (%1)</source>
        <translation>una entrada supera el tamaño indicado (%1)</translation>
    </message>
    <message>
        <source>it is not a zip archive</source>
        <translation>no es un archivo zip</translation>
    </message>
    <message>
        <source>the library for archives is missing</source>
        <translation>falta la biblioteca para archivos comprimidos</translation>
    </message>
    <message>
        <source>the process that speaks HTTP cannot be started</source>
        <translation>no se puede iniciar el proceso de HTTP</translation>
    </message>
    <message>
        <source>the entry points outside the folder</source>
        <translation>la entrada apunta fuera de la carpeta</translation>
    </message>
    <message>
        <source>the entry is nested too deeply</source>
        <translation>la entrada está anidada a demasiada profundidad</translation>
    </message>
    <message>
        <source>the entry would run with another user&apos;s rights</source>
        <translation>la entrada se ejecutaría con los permisos de otro usuario</translation>
    </message>
    <message>
        <source>the entry is a link that points outside the folder</source>
        <translation>la entrada es un enlace que apunta fuera de la carpeta</translation>
    </message>
    <message>
        <source>its unpacked contents are too large</source>
        <translation>su contenido extraído es demasiado grande</translation>
    </message>
    <message>
        <source>the folder no longer exists</source>
        <translation>la carpeta ya no existe</translation>
    </message>
    <message>
        <source>the archive contains no %1</source>
        <translation>el archivo comprimido no contiene %1</translation>
    </message>
    <message>
        <source>the archive does not match the catalogue</source>
        <translation>el archivo comprimido no coincide con el catálogo</translation>
    </message>
    <message>
        <source>its unpacked contents are too large for the size of the archive</source>
        <translation>su contenido extraído es demasiado grande en relación con el tamaño del archivo comprimido</translation>
    </message>
    <message>
        <source>the entry is inside something that is not a folder</source>
        <translation>la entrada está en algo que no es una carpeta</translation>
    </message>
    <message>
        <source>A secure connection to the server could not be established: %1</source>
        <translation>No se pudo establecer una conexión segura con el servidor: %1</translation>
    </message>
    <message>
        <source>The server&apos;s certificate is not trusted: %1</source>
        <translation>El certificado del servidor no es de confianza: %1</translation>
    </message>
    <message>
        <source>Reload Icons</source>
        <translation>Volver a cargar los iconos</translation>
    </message>
    <message>
        <source>Sign in to install Plug-Ins with this account and to keep them up to date.</source>
        <translation>Inicie sesión para instalar plug-ins con esta cuenta y mantenerlos al día.</translation>
    </message>
    <message>
        <source>&amp;Email:</source>
        <translation>Correo &amp;electrónico:</translation>
    </message>
    <message>
        <source>&amp;Update Plug-Ins automatically</source>
        <translation>Act&amp;ualizar los plug-ins automáticamente</translation>
    </message>
    <message>
        <source>This setting is managed by your administrator.</source>
        <translation>Este ajuste lo gestiona su administrador.</translation>
    </message>
    <message>
        <source>Plug-Ins are installed into the enabled folders.</source>
        <translation>Los plug-ins se instalan en las carpetas activadas.</translation>
    </message>
    <message>
        <source>Neither InDesign nor InCopy was found. Add the Plug-Ins folder of the application.</source>
        <translation>No se encontró InDesign ni InCopy. Añada la carpeta Plug-Ins de la aplicación.</translation>
    </message>
    <message>
        <source>Downloading %1 of %2 kB</source>
        <translation>Descargando %1 de %2 kB</translation>
    </message>
    <message>
        <source>Downloading %1 kB</source>
        <translation>Descargando %1 kB</translation>
    </message>
    <message>
        <source>Not available for your applications</source>
        <translation>No hay versión para sus aplicaciones</translation>
    </message>
    <message>
        <source>&amp;Email address</source>
        <translation>Dirección de correo &amp;electrónico</translation>
    </message>
    <message>
        <source>Email address</source>
        <translation>Dirección de correo electrónico</translation>
    </message>
    <message>
        <source>Sign in to install your Plug-Ins and keep them up to date.</source>
        <translation>Inicie sesión para instalar sus plug-ins y mantenerlos al día.</translation>
    </message>
    <message>
        <source>The service is not responding</source>
        <translation>El servicio no responde</translation>
    </message>
    <message>
        <source>No response since %1. Your installed Plug-Ins keep working.</source>
        <translation>Sin respuesta desde %1. Sus plug-ins instalados siguen funcionando.</translation>
    </message>
    <message>
        <source>InDesign and InCopy not found</source>
        <translation>No se encontró InDesign ni InCopy</translation>
    </message>
    <message>
        <source>Choose the applications to install Plug-Ins into.</source>
        <translation>Elija las aplicaciones para sus plug-ins.</translation>
    </message>
    <message>
        <source>The list is being loaded from the service.</source>
        <translation>La lista se está cargando desde el servicio.</translation>
    </message>
    <message>
        <source>No Plug-Ins are available for this account.</source>
        <translation>No hay plug-ins disponibles para esta cuenta.</translation>
    </message>
    <message>
        <source>&apos;%1&apos; is not an absolute path.</source>
        <translation>«%1» no es una ruta absoluta.</translation>
    </message>
    <message>
        <source>&apos;%1&apos; is not a version: enter the application&apos;s version times ten, from %2 to %3, such as 140 for 14.0.</source>
        <translation>«%1» no es una versión: indique la versión de la aplicación multiplicada por diez, de %2 a %3, por ejemplo, 140 para 14.0.</translation>
    </message>
    <message>
        <source>&apos;%1&apos; is not responding. Try again when its disk or server responds.</source>
        <translation>«%1» no responde. Inténtelo de nuevo cuando su disco o servidor responda.</translation>
    </message>
    <message>
        <source>&apos;%1&apos; is not a folder.</source>
        <translation>«%1» no es una carpeta.</translation>
    </message>
    <message>
        <source>&apos;%1&apos; is the root of the file system, which cannot be used as a Plug-Ins folder.</source>
        <translation>«%1» es la raíz del sistema de archivos, que no se puede usar como carpeta Plug-Ins.</translation>
    </message>
    <message>
        <source>The application&apos;s state, its logs and its latest crash reports are included.</source>
        <translation>Se envían también el estado, los registros y los informes de fallos más recientes de esta aplicación.</translation>
    </message>
    <message>
        <source>This is everything that is sent if you send the report now (%1 bytes).</source>
        <translation>Esto es todo lo que se envía si envía el informe ahora (%1 bytes).</translation>
    </message>
    <message>
        <source>Your &amp;email address:</source>
        <translation>Su dirección de corr&amp;eo electrónico:</translation>
    </message>
    <message>
        <source>Could not check for updates to Tolvane Brevok.</source>
        <translation>No se pudieron buscar actualizaciones de Tolvane Brevok.</translation>
    </message>
    <message>
        <source>Version %1 is the latest version.</source>
        <translation>La versión %1 es la más reciente.</translation>
    </message>
    <message>
        <source>This version cannot check for updates.</source>
        <translation>Esta versión no permite buscar actualizaciones.</translation>
    </message>
    <message>
        <source>The system&apos;s software service (PackageKit) is not available.</source>
        <translation>El servicio de software del sistema (PackageKit) no está disponible.</translation>
    </message>
    <message>
        <source>The system&apos;s software service did not install the package: %1</source>
        <translation>El servicio de software del sistema no instaló el paquete: %1</translation>
    </message>
    <message>
        <source>The system&apos;s software service stopped before the package was installed.</source>
        <translation>El servicio de software del sistema se detuvo antes de instalar el paquete.</translation>
    </message>
    <message>
        <source>Could not read the file &quot;%1&quot;</source>
        <translation>No se pudo leer el archivo «%1»</translation>
    </message>
    <message>
        <source>The privileged helper is not responding.</source>
        <translation>El programa auxiliar con privilegios no responde.</translation>
    </message>
    <message>
        <source>Administrator approval is required and was not given.</source>
        <translation>Se necesita la autorización de un administrador y no se obtuvo.</translation>
    </message>
    <message>
        <source>Setting up the privileged helper ended without a result.</source>
        <translation>La configuración del programa auxiliar con privilegios terminó sin resultado.</translation>
    </message>
    <message>
        <source>The privileged helper was installed but does not start.</source>
        <translation>El programa auxiliar con privilegios se instaló, pero no se inicia.</translation>
    </message>
    <message>
        <source>The checksum in the catalogue cannot be read.</source>
        <translation>No se puede leer la suma de comprobación del catálogo.</translation>
    </message>
    <message>
        <source>The download does not match the catalogue.</source>
        <translation>La descarga no coincide con el catálogo.</translation>
    </message>
    <message>
        <source>the reason is not known</source>
        <translation>no se conoce el motivo</translation>
    </message>
    <message>
        <source>something else has taken the folder&apos;s place</source>
        <translation>hay otra cosa en el lugar de la carpeta</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <comment>what failed, and why</comment>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <comment>why something failed, and the details</comment>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>InDesign&apos;s latest crash report is included too.</source>
        <translation>También se envía el informe de fallos más reciente de InDesign.</translation>
    </message>
    <message>
        <source>What you wrote</source>
        <translation>Lo que ha escrito</translation>
    </message>
    <message>
        <source>The application</source>
        <translation>La aplicación</translation>
    </message>
    <message>
        <source>Logs</source>
        <translation>Registros</translation>
    </message>
    <message>
        <source>Crash reports</source>
        <translation>Informes de fallos</translation>
    </message>
    <message>
        <source>Your Plug-Ins were changed</source>
        <translation>Sus plug-ins han cambiado</translation>
    </message>
    <message>
        <source>Installed: %1</source>
        <translation>Instalación: %1</translation>
    </message>
    <message>
        <source>Removed: %1</source>
        <translation>Eliminación: %1</translation>
    </message>
    <message>
        <source>Waiting for an update: %1</source>
        <translation>Actualización disponible: %1</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Abrir</translation>
    </message>
    <message>
        <source>Used by scheduled updates. Next: %1.</source>
        <translation>Se usa en las actualizaciones programadas. Próxima: %1.</translation>
    </message>
    <message>
        <source>Clear Search</source>
        <translation>Borrar la búsqueda</translation>
    </message>
</context>
</TS>
