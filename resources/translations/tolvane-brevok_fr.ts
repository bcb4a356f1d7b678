<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr" sourcelanguage="en">
<context>
    <name>Brevok</name>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Another copy of Tolvane Brevok application is already running.</source>
        <translation>Une autre copie de Tolvane Brevok est déjà en cours d’exécution.</translation>
    </message>
    <message>
        <source>Only one copy can be run at a time. Quit running Tolvane Brevok to run this copy of Tolvane Brevok application.</source>
        <translation>Une seule copie peut s’exécuter à la fois. Quittez la copie de Tolvane Brevok en cours d’exécution pour lancer celle-ci.</translation>
    </message>
    <message>
        <source>Tolvane Brevok cannot store its data</source>
        <translation>Tolvane Brevok ne peut pas enregistrer ses données</translation>
    </message>
    <message>
        <source>The stored data of Tolvane Brevok was damaged</source>
        <translation>Les données enregistrées de Tolvane Brevok étaient endommagées</translation>
    </message>
    <message>
        <source>Failed to update Products data</source>
        <translation>Échec de la mise à jour des données des produits</translation>
    </message>
    <message>
        <source>Failed to update Plug-Ins data</source>
        <translation>Échec de la mise à jour des données des plug-ins</translation>
    </message>
    <message>
        <source>Installer detected one or more unfinished actions. Do you want to finish or discard those actions?</source>
        <translation>Le programme d’installation a détecté une ou plusieurs actions inachevées. Voulez-vous terminer ou abandonner ces actions ?</translation>
    </message>
    <message>
        <source>Tolvane Brevok application probably crashed, or was forced to quit. Unfinished install/uninstall actions are left overs from previous session.</source>
        <translation>Tolvane Brevok s’est probablement arrêté de façon inattendue ou a été fermé de force. Des installations ou désinstallations de la session précédente sont restées inachevées.</translation>
    </message>
    <message>
        <source>Discard Actions</source>
        <translation>Abandonner les actions</translation>
    </message>
    <message>
        <source>Finish Actions</source>
        <translation>Terminer les actions</translation>
    </message>
    <message>
        <source>Unable to contact the Tolvane Brevok server for %1 days.</source>
        <translation>Impossible de joindre le serveur Tolvane Brevok depuis %1 jours.</translation>
    </message>
    <message>
        <source>You&apos;re up-to-date!</source>
        <translation>Tout est à jour !</translation>
    </message>
    <message>
        <source>There are no new Plug-In updates available.</source>
        <translation>Aucune nouvelle mise à jour de plug-in n’est disponible.</translation>
    </message>
    <message>
        <source>Plug-In update available!</source>
        <translation>Mise à jour de plug-in disponible !</translation>
    </message>
    <message>
        <source>%1 Plug-In update is available.</source>
        <translation>Une mise à jour du plug-in %1 est disponible.</translation>
    </message>
    <message>
        <source>Plug-In updates available!</source>
        <translation>Mises à jour de plug-ins disponibles !</translation>
    </message>
    <message>
        <source>You have %1 Plug-In updates available.</source>
        <translation>%1 mises à jour de plug-ins sont disponibles.</translation>
    </message>
    <message>
        <source>Incorrect input to installPlugin:</source>
        <translation>Entrée incorrecte pour installPlugin:</translation>
    </message>
    <message>
        <source>Incorrect input to removeItemAtPath:</source>
        <translation>Entrée incorrecte pour removeItemAtPath:</translation>
    </message>
    <message>
        <source>The workspace could not be installed at %1.</source>
        <translation>L’espace de travail n’a pas pu être installé à l’emplacement %1.</translation>
    </message>
    <message>
        <source>Failed to install &apos;%1.InDesignPlugin&apos;!</source>
        <translation>Échec de l’installation de « %1.InDesignPlugin » !</translation>
    </message>
    <message>
        <source>Multiple errors have occured. Please contact Tolvane support.</source>
        <translation>Plusieurs erreurs se sont produites. Veuillez contacter l’assistance Tolvane.</translation>
    </message>
    <message>
        <source>Error: %1</source>
        <translation>Erreur : %1</translation>
    </message>
    <message>
        <source>The folder %1 is not writable.</source>
        <translation>Le dossier %1 n’est pas accessible en écriture.</translation>
    </message>
    <message>
        <source>Failed to download %1, from %2</source>
        <translation>Échec du téléchargement de %1 depuis %2</translation>
    </message>
    <message>
        <source>To take advantage of newly installed Plug-Ins, restart %1.

Do you want to quit %1 now or do it yourself later?</source>
        <translation>Pour profiter des plug-ins qui viennent d’être installés, redémarrez %1.

Voulez-vous quitter %1 maintenant ou le faire vous-même plus tard ?</translation>
    </message>
    <message>
        <source>Quit %1</source>
        <translation>Quitter %1</translation>
    </message>
    <message>
        <source>Continue</source>
        <translation>Continuer</translation>
    </message>
    <message>
        <source>Adobe %1 %2 is running.</source>
        <translation>Adobe %1 %2 est en cours d’exécution.</translation>
    </message>
    <message>
        <source>Removing Plug-Ins from running Adobe %1 can lead to unexpected behaviour, you should quit %1 before proceeding.</source>
        <translation>Supprimer des plug-ins pendant qu’Adobe %1 s’exécute peut entraîner un comportement inattendu ; quittez %1 avant de continuer.</translation>
    </message>
    <message>
        <source>Could not create the folder &quot;%1&quot;</source>
        <translation>Impossible de créer le dossier « %1 »</translation>
    </message>
    <message>
        <source>Could not remove &quot;%1&quot;</source>
        <translation>Impossible de supprimer « %1 »</translation>
    </message>
    <message>
        <source>Could not copy &quot;%1&quot; to &quot;%2&quot;</source>
        <translation>Impossible de copier « %1 » vers « %2 »</translation>
    </message>
    <message>
        <source>Could not copy &quot;%1&quot; to &quot;%2&quot; (at &quot;%3&quot;)</source>
        <translation>Impossible de copier « %1 » vers « %2 » (sur « %3 »)</translation>
    </message>
    <message>
        <source>Could not open the archive &quot;%1&quot;</source>
        <translation>Impossible d’ouvrir l’archive « %1 »</translation>
    </message>
    <message>
        <source>Could not open the folder &quot;%1&quot;</source>
        <translation>Impossible d’ouvrir le dossier « %1 »</translation>
    </message>
    <message>
        <source>Could not change the owner and permissions of &quot;%1&quot;</source>
        <translation>Impossible de modifier le propriétaire et les autorisations de « %1 »</translation>
    </message>
    <message>
        <source>Could not unpack &quot;%1&quot; into &quot;%2&quot;</source>
        <translation>Impossible d’extraire « %1 » dans « %2 »</translation>
    </message>
    <message>
        <source>the process that speaks HTTP has ended</source>
        <translation>le processus qui parle HTTP s’est terminé</translation>
    </message>
    <message>
        <source>it has more than %1 entries</source>
        <translation>elle contient plus de %1 éléments</translation>
    </message>
    <message>
        <source>an entry has no name</source>
        <translation>un élément n’a pas de nom</translation>
    </message>
    <message>
        <source>the name of the entry is not relative</source>
        <translation>le nom de l’élément n’est pas relatif</translation>
    </message>
    <message>
        <source>the name of the entry is too long</source>
        <translation>le nom de l’élément est trop long</translation>
    </message>
    <message>
        <source>the entry is encrypted</source>
        <translation>l’élément est chiffré</translation>
    </message>
    <message>
        <source>it has too many links</source>
        <translation>elle contient trop de liens</translation>
    </message>
    <message>
        <source>the entry is neither a file nor a folder</source>
        <translation>l’élément n’est ni un fichier ni un dossier</translation>
    </message>
    <message>
        <source>no space left on the disk</source>
        <translation>plus d’espace sur le disque</translation>
    </message>
    <message>
        <source>no permission to change the folder</source>
        <translation>pas l’autorisation de modifier le dossier</translation>
    </message>
    <message>
        <source>the disk is write-protected</source>
        <translation>le disque est protégé en écriture</translation>
    </message>
    <message>
        <source>the disk reports an error</source>
        <translation>le disque signale une erreur</translation>
    </message>
    <message>
        <source>the archive cannot be read</source>
        <translation>l’archive ne peut pas être lue</translation>
    </message>
    <message>
        <source>the archive is refused: %1</source>
        <translation>l’archive est refusée : %1</translation>
    </message>
    <message>
        <source>the archive is damaged</source>
        <translation>l’archive est endommagée</translation>
    </message>
    <message>
        <source>the entry occurs twice</source>
        <translation>l’élément apparaît deux fois</translation>
    </message>
    <message>
        <source>The downloaded file cannot be saved: %1</source>
        <translation>Le fichier téléchargé ne peut pas être enregistré : %1</translation>
    </message>
    <message>
        <source>Server responded with HTTP code: %1.</source>
        <translation>Le serveur a répondu avec le code HTTP : %1.</translation>
    </message>
    <message>
        <source>The download is longer than the expected %1 bytes.</source>
        <translation>Le téléchargement dépasse les %1 octets attendus.</translation>
    </message>
    <message>
        <source>The download has %1 of the expected %2 bytes.</source>
        <translation>Le téléchargement contient %1 des %2 octets attendus.</translation>
    </message>
    <message>
        <source>Network is unreachable. Is your internet connection down?</source>
        <translation>Le réseau est inaccessible. Votre connexion Internet est-elle coupée ?</translation>
    </message>
    <message>
        <source>Connection Error</source>
        <translation>Erreur de connexion</translation>
    </message>
    <message>
        <source>Authentication Error</source>
        <translation>Erreur d’authentification</translation>
    </message>
    <message>
        <source>There is critical update of Tolvane Brevok application.</source>
        <translation>Une mise à jour critique de Tolvane Brevok est disponible.</translation>
    </message>
    <message>
        <source>Unexpected server response.</source>
        <translation>Réponse inattendue du serveur.</translation>
    </message>
    <message>
        <source>The server redirected the request to another server.</source>
        <translation>Le serveur a redirigé la requête vers un autre serveur.</translation>
    </message>
    <message>
        <source>The server redirected the request in a way that would lose it.</source>
        <translation>Le serveur a redirigé la requête d’une manière qui la perdrait.</translation>
    </message>
    <message>
        <source>The server redirected the request to an address that is not secure.</source>
        <translation>Le serveur a redirigé la requête vers une adresse qui n’est pas sûre.</translation>
    </message>
    <message>
        <source>The server sent more data than expected.</source>
        <translation>Le serveur a envoyé plus de données que prévu.</translation>
    </message>
    <message>
        <source>Wrong user name or password.</source>
        <translation>Nom d’utilisateur ou mot de passe incorrect.</translation>
    </message>
    <message>
        <source>Insufficient rights to access Tolvane Brevok verification server.</source>
        <translation>Droits insuffisants pour accéder au serveur de vérification Tolvane Brevok.</translation>
    </message>
    <message>
        <source>The requested resource could not be found.
Server might be temporarily inaccessible.</source>
        <translation>La ressource demandée est introuvable.
Le serveur est peut-être temporairement inaccessible.</translation>
    </message>
    <message>
        <source>continue</source>
        <translation>continuer</translation>
    </message>
    <message>
        <source>switching protocols</source>
        <translation>changement de protocole</translation>
    </message>
    <message>
        <source>no error</source>
        <translation>aucune erreur</translation>
    </message>
    <message>
        <source>created</source>
        <translation>créé</translation>
    </message>
    <message>
        <source>accepted</source>
        <translation>accepté</translation>
    </message>
    <message>
        <source>non-authoritative information</source>
        <translation>information ne faisant pas autorité</translation>
    </message>
    <message>
        <source>no content</source>
        <translation>aucun contenu</translation>
    </message>
    <message>
        <source>reset content</source>
        <translation>contenu à réinitialiser</translation>
    </message>
    <message>
        <source>partial content</source>
        <translation>contenu partiel</translation>
    </message>
    <message>
        <source>multiple choices</source>
        <translation>choix multiples</translation>
    </message>
    <message>
        <source>moved permanently</source>
        <translation>déplacé définitivement</translation>
    </message>
    <message>
        <source>found</source>
        <translation>trouvé</translation>
    </message>
    <message>
        <source>see other</source>
        <translation>voir ailleurs</translation>
    </message>
    <message>
        <source>not modified</source>
        <translation>non modifié</translation>
    </message>
    <message>
        <source>needs proxy</source>
        <translation>proxy nécessaire</translation>
    </message>
    <message>
        <source>temporarily redirected</source>
        <translation>redirigé temporairement</translation>
    </message>
    <message>
        <source>bad request</source>
        <translation>requête incorrecte</translation>
    </message>
    <message>
        <source>unauthorized</source>
        <translation>non autorisé</translation>
    </message>
    <message>
        <source>payment required</source>
        <translation>paiement requis</translation>
    </message>
    <message>
        <source>forbidden</source>
        <translation>interdit</translation>
    </message>
    <message>
        <source>not found</source>
        <translation>introuvable</translation>
    </message>
    <message>
        <source>method not allowed</source>
        <translation>méthode non autorisée</translation>
    </message>
    <message>
        <source>unacceptable</source>
        <translation>inacceptable</translation>
    </message>
    <message>
        <source>proxy authentication required</source>
        <translation>authentification du proxy requise</translation>
    </message>
    <message>
        <source>request timed out</source>
        <translation>délai de la requête dépassé</translation>
    </message>
    <message>
        <source>conflict</source>
        <translation>conflit</translation>
    </message>
    <message>
        <source>no longer exists</source>
        <translation>n’existe plus</translation>
    </message>
    <message>
        <source>length required</source>
        <translation>longueur requise</translation>
    </message>
    <message>
        <source>precondition failed</source>
        <translation>condition préalable non remplie</translation>
    </message>
    <message>
        <source>request too large</source>
        <translation>requête trop volumineuse</translation>
    </message>
    <message>
        <source>requested URL too long</source>
        <translation>URL demandée trop longue</translation>
    </message>
    <message>
        <source>unsupported media type</source>
        <translation>type de média non pris en charge</translation>
    </message>
    <message>
        <source>requested range not satisfiable</source>
        <translation>plage demandée impossible à fournir</translation>
    </message>
    <message>
        <source>expectation failed</source>
        <translation>attente non satisfaite</translation>
    </message>
    <message>
        <source>internal server error</source>
        <translation>erreur interne du serveur</translation>
    </message>
    <message>
        <source>unimplemented</source>
        <translation>non implémenté</translation>
    </message>
    <message>
        <source>bad gateway</source>
        <translation>mauvaise passerelle</translation>
    </message>
    <message>
        <source>service unavailable</source>
        <translation>service indisponible</translation>
    </message>
    <message>
        <source>gateway timed out</source>
        <translation>délai de la passerelle dépassé</translation>
    </message>
    <message>
        <source>unsupported version</source>
        <translation>version non prise en charge</translation>
    </message>
    <message>
        <source>informational</source>
        <translation>information</translation>
    </message>
    <message>
        <source>success</source>
        <translation>succès</translation>
    </message>
    <message>
        <source>redirected</source>
        <translation>redirigé</translation>
    </message>
    <message>
        <source>client error</source>
        <translation>erreur du client</translation>
    </message>
    <message>
        <source>server error</source>
        <translation>erreur du serveur</translation>
    </message>
    <message>
        <source>Invalid session Id. You have been logged out!
Please try to sign-in again.</source>
        <translation>Identifiant de session non valide. Vous avez été déconnecté !
Veuillez vous reconnecter.</translation>
    </message>
    <message>
        <source>Security Violation Error. You have been logged out!
Please try to sign-in again.</source>
        <translation>Violation de sécurité. Vous avez été déconnecté !
Veuillez vous reconnecter.</translation>
    </message>
    <message>
        <source>Internal Server Error. Please contact Tolvane support.</source>
        <translation>Erreur interne du serveur. Veuillez contacter l’assistance Tolvane.</translation>
    </message>
    <message>
        <source>The request timed out.</source>
        <translation>Le délai de la requête est dépassé.</translation>
    </message>
    <message>
        <source>A server with the specified hostname could not be found.</source>
        <translation>Aucun serveur portant ce nom n’a été trouvé.</translation>
    </message>
    <message>
        <source>Could not connect to the server.</source>
        <translation>Impossible de se connecter au serveur.</translation>
    </message>
    <message>
        <source>Could not connect to the proxy server.</source>
        <translation>Impossible de se connecter au serveur proxy.</translation>
    </message>
    <message>
        <source>The network connection was lost.</source>
        <translation>La connexion au réseau a été perdue.</translation>
    </message>
    <message>
        <source>Too many HTTP redirects.</source>
        <translation>Trop de redirections HTTP.</translation>
    </message>
    <message>
        <source>The transfer failed: %1</source>
        <translation>Le transfert a échoué : %1</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>Version %1 (%2, %3)</source>
        <translation>Version %1 (%2, %3)</translation>
    </message>
    <message>
        <source>About %1</source>
        <translation>À propos de %1</translation>
    </message>
    <message>
        <source>1 update available</source>
        <translation>1 mise à jour disponible</translation>
    </message>
    <message>
        <source>%1 updates available</source>
        <translation>%1 mises à jour disponibles</translation>
    </message>
    <message>
        <source>Remove %1</source>
        <translation>Supprimer %1</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Supprimer</translation>
    </message>
    <message>
        <source>More about this Plug-In</source>
        <translation>En savoir plus sur ce plug-in</translation>
    </message>
    <message>
        <source>%1 is in progress</source>
        <translation>Traitement de %1 en cours</translation>
    </message>
    <message>
        <source>Download of %1</source>
        <translation>Téléchargement de %1</translation>
    </message>
    <message>
        <source>%1 %2</source>
        <translation>%1 : %2</translation>
    </message>
    <message>
        <source>Check for Plug-In Updates</source>
        <translation>Rechercher des mises à jour de plug-ins</translation>
    </message>
    <message>
        <source>Check for Application Update…</source>
        <translation>Rechercher une mise à jour de l’application…</translation>
    </message>
    <message>
        <source>My Account</source>
        <translation>Mon compte</translation>
    </message>
    <message>
        <source>Preferences…</source>
        <translation>Préférences…</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Aide</translation>
    </message>
    <message>
        <source>Report a Bug…</source>
        <translation>Signaler un problème…</translation>
    </message>
    <message>
        <source>About Tolvane Brevok</source>
        <translation>À propos de Tolvane Brevok</translation>
    </message>
    <message>
        <source>Quit…</source>
        <translation>Quitter…</translation>
    </message>
    <message>
        <source>Tolvane Brevok</source>
        <translation>Tolvane Brevok</translation>
    </message>
    <message>
        <source>Are you sure you want to quit</source>
        <translation>Voulez-vous vraiment quitter Tolvane Brevok ?</translation>
    </message>
    <message>
        <source>Tolvane Brevok needs to be running to keep the Plug-Ins active.</source>
        <translation>Tolvane Brevok doit rester ouvert pour que les plug-ins restent actifs.</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Quitter</translation>
    </message>
    <message>
        <source>Preferences</source>
        <translation>Préférences</translation>
    </message>
    <message>
        <source>Pages</source>
        <translation>Pages</translation>
    </message>
    <message>
        <source>Account</source>
        <translation>Compte</translation>
    </message>
    <message>
        <source>Targets</source>
        <translation>Cibles</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Réglages</translation>
    </message>
    <message>
        <source>&amp;Password:</source>
        <translation>&amp;Mot de passe :</translation>
    </message>
    <message>
        <source>Create Account…</source>
        <translation>Créer un compte…</translation>
    </message>
    <message>
        <source>Start at &amp;login</source>
        <translation>Lancer à l’ouverture de &amp;session</translation>
    </message>
    <message>
        <source>Show &amp;notifications</source>
        <translation>Afficher les &amp;notifications</translation>
    </message>
    <message>
        <source>&amp;Check for new versions of this application</source>
        <translation>&amp;Rechercher les nouvelles versions de cette application</translation>
    </message>
    <message>
        <source>Write a &amp;detailed log</source>
        <translation>Enregistrer un journal &amp;détaillé</translation>
    </message>
    <message>
        <source>&amp;Add…</source>
        <translation>&amp;Ajouter…</translation>
    </message>
    <message>
        <source>&amp;Remove</source>
        <translation>&amp;Supprimer</translation>
    </message>
    <message>
        <source>Add Target</source>
        <translation>Ajouter une cible</translation>
    </message>
    <message>
        <source>Chose Plug-Ins directory inside Adobe InCopy/InDesign application folder.</source>
        <translation>Choisissez le dossier Plug-Ins dans le dossier de l’application Adobe InCopy/InDesign.</translation>
    </message>
    <message>
        <source>&amp;Folder:</source>
        <translation>&amp;Dossier :</translation>
    </message>
    <message>
        <source>&amp;Browse…</source>
        <translation>&amp;Parcourir…</translation>
    </message>
    <message>
        <source>&amp;Application:</source>
        <translation>&amp;Application :</translation>
    </message>
    <message>
        <source>&amp;Version:</source>
        <translation>&amp;Version :</translation>
    </message>
    <message>
        <source>Sign Out</source>
        <translation>Se déconnecter</translation>
    </message>
    <message>
        <source>Sign In</source>
        <translation>Se connecter</translation>
    </message>
    <message>
        <source>Contacting the service…</source>
        <translation>Connexion au service…</translation>
    </message>
    <message>
        <source>Signed in as %1.</source>
        <translation>Connecté en tant que %1.</translation>
    </message>
    <message>
        <source>Not signed in.</source>
        <translation>Non connecté.</translation>
    </message>
    <message>
        <source>Checking for Updates</source>
        <translation>Recherche de mises à jour</translation>
    </message>
    <message>
        <source>Checking for updates…</source>
        <translation>Recherche de mises à jour…</translation>
    </message>
    <message>
        <source>Downloading %1 of %2 GB</source>
        <translation>Téléchargement de %1 sur %2 Go</translation>
    </message>
    <message>
        <source>Downloading %1 GB</source>
        <translation>Téléchargement de %1 Go</translation>
    </message>
    <message>
        <source>Downloading %1 of %2 MB</source>
        <translation>Téléchargement de %1 sur %2 Mo</translation>
    </message>
    <message>
        <source>Downloading %1 MB</source>
        <translation>Téléchargement de %1 Mo</translation>
    </message>
    <message>
        <source>Install</source>
        <translation>Installer</translation>
    </message>
    <message>
        <source>Update</source>
        <translation>Mettre à jour</translation>
    </message>
    <message>
        <source>Up To Date</source>
        <translation>À jour</translation>
    </message>
    <message>
        <source>Partly installed</source>
        <translation>Partiellement installé</translation>
    </message>
    <message>
        <source>Partly outdated</source>
        <translation>Partiellement obsolète</translation>
    </message>
    <message>
        <source>Working…</source>
        <translation>En cours…</translation>
    </message>
    <message>
        <source>Installing…</source>
        <translation>Installation…</translation>
    </message>
    <message>
        <source>Sign in</source>
        <translation>Se connecter</translation>
    </message>
    <message>
        <source>&amp;Password</source>
        <translation>&amp;Mot de passe</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>Mot de passe</translation>
    </message>
    <message>
        <source>Contacting the service</source>
        <translation>Connexion au service</translation>
    </message>
    <message>
        <source>Options</source>
        <translation>Options</translation>
    </message>
    <message>
        <source>Plug-Ins</source>
        <translation>Plug-ins</translation>
    </message>
    <message>
        <source>You are signed out</source>
        <translation>Vous n’êtes pas connecté à votre compte</translation>
    </message>
    <message>
        <source>Sign In…</source>
        <translation>Se connecter…</translation>
    </message>
    <message>
        <source>No network connection</source>
        <translation>Aucune connexion réseau</translation>
    </message>
    <message>
        <source>Connect to the internet to install and update Plug-Ins.</source>
        <translation>Connectez-vous à Internet pour installer et mettre à jour des plug-ins.</translation>
    </message>
    <message>
        <source>Try Again</source>
        <translation>Réessayer</translation>
    </message>
    <message>
        <source>Choose Applications…</source>
        <translation>Choisir les applications…</translation>
    </message>
    <message>
        <source>Loading Plug-Ins…</source>
        <translation>Chargement des plug-ins…</translation>
    </message>
    <message>
        <source>No Plug-Ins yet</source>
        <translation>Pas encore de plug-ins</translation>
    </message>
    <message>
        <source>Check Again</source>
        <translation>Vérifier à nouveau</translation>
    </message>
    <message>
        <source>Not signed in</source>
        <translation>Non connecté</translation>
    </message>
    <message>
        <source>Signed in</source>
        <translation>Connecté</translation>
    </message>
    <message>
        <source>1 update</source>
        <translation>1 mise à jour</translation>
    </message>
    <message>
        <source>%1 updates</source>
        <translation>%1 mises à jour</translation>
    </message>
    <message>
        <source>Other…</source>
        <translation>Autre…</translation>
    </message>
    <message>
        <source>None</source>
        <translation>Aucun</translation>
    </message>
    <message>
        <source>Chose Plug-Ins directory</source>
        <translation>Choisir le dossier Plug-Ins</translation>
    </message>
    <message>
        <source>There is no folder &apos;%1&apos;.</source>
        <translation>Il n’y a pas de dossier « %1 ».</translation>
    </message>
    <message>
        <source>Checking the folder…</source>
        <translation>Vérification du dossier…</translation>
    </message>
    <message>
        <source>Invalid Plug-Ins path selected!</source>
        <translation>Le chemin sélectionné n’est pas un dossier Plug-Ins valide !</translation>
    </message>
    <message>
        <source>The path you specified doesn&apos;t look like a valid Adobe InDesign Plug-Ins folder. Do you want to use it anyway?</source>
        <translation>Le chemin indiqué ne semble pas être un dossier Plug-Ins valide d’Adobe InDesign. Voulez-vous l’utiliser quand même ?</translation>
    </message>
    <message>
        <source>Enable %1</source>
        <translation>Activer %1</translation>
    </message>
    <message>
        <source>Enabled</source>
        <translation>Activé</translation>
    </message>
    <message>
        <source>Plug-Ins folder</source>
        <translation>Dossier Plug-Ins</translation>
    </message>
    <message>
        <source>Checking the connection…</source>
        <translation>Vérification de la connexion…</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Fermer</translation>
    </message>
    <message>
        <source>Failed to send error report</source>
        <translation>Échec de l’envoi du rapport d’erreur</translation>
    </message>
    <message>
        <source>Gathering the report…</source>
        <translation>Préparation du rapport…</translation>
    </message>
    <message>
        <source>Invalid email address!</source>
        <translation>Adresse e-mail non valide !</translation>
    </message>
    <message>
        <source>Missing email address!</source>
        <translation>Adresse e-mail manquante !</translation>
    </message>
    <message>
        <source>Missing problem description!</source>
        <translation>Description du problème manquante !</translation>
    </message>
    <message>
        <source>Please contact Tolvane support.</source>
        <translation>Veuillez contacter l’assistance Tolvane.</translation>
    </message>
    <message>
        <source>Please describe the problem and what were you doing when the problem came up.</source>
        <translation>Veuillez décrire le problème et ce que vous faisiez lorsqu’il est survenu.</translation>
    </message>
    <message>
        <source>Please enter a valid email address so we can respond to your message.</source>
        <translation>Veuillez saisir une adresse e-mail valide pour que nous puissions vous répondre.</translation>
    </message>
    <message>
        <source>Received %1 bytes (%2)

%3</source>
        <translation>%1 octets reçus (%2)

%3</translation>
    </message>
    <message>
        <source>Report a Bug</source>
        <translation>Signaler un problème</translation>
    </message>
    <message>
        <source>Send</source>
        <translation>Envoyer</translation>
    </message>
    <message>
        <source>Sending the report…</source>
        <translation>Envoi du rapport…</translation>
    </message>
    <message>
        <source>Server response: %1

%2</source>
        <translation>Réponse du serveur : %1

%2</translation>
    </message>
    <message>
        <source>Show what will be sent</source>
        <translation>Afficher ce qui sera envoyé</translation>
    </message>
    <message>
        <source>Thank you for reporting this issue.</source>
        <translation>Merci d’avoir signalé ce problème.</translation>
    </message>
    <message>
        <source>Tolvane Brevok servers are unreachable.</source>
        <translation>Les serveurs de Tolvane Brevok sont injoignables.</translation>
    </message>
    <message>
        <source>Tolvane support team will contact you shortly.</source>
        <translation>L’équipe d’assistance Tolvane vous contactera prochainement.</translation>
    </message>
    <message>
        <source>Unknown</source>
        <translation>Inconnu</translation>
    </message>
    <message>
        <source>Unknown connection error.</source>
        <translation>Erreur de connexion inconnue.</translation>
    </message>
    <message>
        <source>What went &amp;wrong, and what were you doing when the problem came up?</source>
        <translation>&amp;Que s’est-il passé et que faisiez-vous lorsque le problème est survenu ?</translation>
    </message>
    <message>
        <source>What will be sent</source>
        <translation>Ce qui sera envoyé</translation>
    </message>
    <message>
        <source>Software Update</source>
        <translation>Mise à jour logicielle</translation>
    </message>
    <message>
        <source>Release notes</source>
        <translation>Notes de version</translation>
    </message>
    <message>
        <source>A new version of Tolvane Brevok is available.</source>
        <translation>Une nouvelle version de Tolvane Brevok est disponible.</translation>
    </message>
    <message>
        <source>Version %1 is available; you have version %2. Would you like to install it now?</source>
        <translation>La version %1 est disponible ; vous avez la version %2. Voulez-vous l’installer maintenant ?</translation>
    </message>
    <message>
        <source>Install Update</source>
        <translation>Installer la mise à jour</translation>
    </message>
    <message>
        <source>Remind Me Later</source>
        <translation>Me le rappeler plus tard</translation>
    </message>
    <message>
        <source>Skip This Version</source>
        <translation>Ignorer cette version</translation>
    </message>
    <message>
        <source>Hide</source>
        <translation>Masquer</translation>
    </message>
    <message>
        <source>Downloading version %1…</source>
        <translation>Téléchargement de la version %1…</translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <translation>%1 sur %2</translation>
    </message>
    <message>
        <source>Verifying version %1…</source>
        <translation>Vérification de la version %1…</translation>
    </message>
    <message>
        <source>Installing version %1…</source>
        <translation>Installation de la version %1…</translation>
    </message>
    <message>
        <source>The system may ask for an administrator's password.</source>
        <translation>Le système peut demander le mot de passe d’un administrateur.</translation>
    </message>
    <message>
        <source>Version %1 is installed.</source>
        <translation>La version %1 est installée.</translation>
    </message>
    <message>
        <source>It will be used the next time Tolvane Brevok starts.</source>
        <translation>Elle sera utilisée au prochain démarrage de Tolvane Brevok.</translation>
    </message>
    <message>
        <source>Version %1 was not installed.</source>
        <translation>La version %1 n’a pas été installée.</translation>
    </message>
    <message>
        <source>Tolvane Brevok is up to date.</source>
        <translation>Tolvane Brevok est à jour.</translation>
    </message>
    <message>
        <source>The description of available updates cannot be read.</source>
        <translation>La description des mises à jour disponibles est illisible.</translation>
    </message>
    <message>
        <source>Version %1 is offered at an address that is not secure. It cannot be installed.</source>
        <translation>La version %1 est proposée à une adresse non sécurisée. Elle ne peut pas être installée.</translation>
    </message>
    <message>
        <source>Version %1 is offered without a valid signature. It cannot be installed.</source>
        <translation>La version %1 est proposée sans signature valide. Elle ne peut pas être installée.</translation>
    </message>
    <message>
        <source>Version %1 is offered without a valid size. It cannot be installed.</source>
        <translation>La version %1 est proposée sans taille valide. Elle ne peut pas être installée.</translation>
    </message>
    <message>
        <source>The folder for the update cannot be used: %1</source>
        <translation>Le dossier de la mise à jour est inutilisable : %1</translation>
    </message>
    <message>
        <source>The downloaded file cannot be read: %1</source>
        <translation>Le fichier téléchargé est illisible : %1</translation>
    </message>
    <message>
        <source>The downloaded update is not version %1 of Tolvane Brevok. It was not installed, and the file was removed.</source>
        <translation>La mise à jour téléchargée n’est pas la version %1 de Tolvane Brevok. Elle n’a pas été installée et le fichier a été supprimé.</translation>
    </message>
    <message>
        <source>This copy cannot update itself. You can get the new version at %1.</source>
        <translation>Cette copie ne peut pas se mettre à jour elle-même. La nouvelle version est disponible à l’adresse %1.</translation>
    </message>
    <message>
        <source>The downloaded update is not signed by the maker of Tolvane Brevok. It was not installed, and the file was removed.</source>
        <translation>La mise à jour téléchargée n’est pas signée par l’éditeur de Tolvane Brevok. Elle n’a pas été installée et le fichier a été supprimé.</translation>
    </message>
    <message>
        <source>The installation was cancelled.</source>
        <translation>L’installation a été annulée.</translation>
    </message>
    <message>
        <source>Could not write &quot;%1&quot;</source>
        <translation>Impossible d’écrire « %1 »</translation>
    </message>
    <message>
        <source>%1 (and %2 more)</source>
        <translation>%1 (et %2 de plus)</translation>
    </message>
    <message>
        <source>%1 is running</source>
        <translation>%1 est en cours d’exécution</translation>
    </message>
    <message>
        <source>another package needs it</source>
        <translation>un autre paquet en a besoin</translation>
    </message>
    <message>
        <source>it is up to date</source>
        <translation>il est à jour</translation>
    </message>
    <message>
        <source>Tolvane Brevok cannot read its stored data.</source>
        <translation>Tolvane Brevok ne peut pas lire ses données enregistrées.</translation>
    </message>
    <message>
        <source>The check for Plug-In updates failed</source>
        <translation>Échec de la recherche de mises à jour des plug-ins</translation>
    </message>
    <message>
        <source>Web Page</source>
        <translation>Page web</translation>
    </message>
    <message>
        <source>No browser could be started. This is the address of the page:</source>
        <translation>Impossible de lancer un navigateur. Voici l’adresse de la page :</translation>
    </message>
    <message>
        <source>Address</source>
        <translation>Adresse</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Copier</translation>
    </message>
    <message>
        <source>Tolvane Brevok installs your Plug-Ins in InDesign and InCopy and keeps them up to date: sign in with your account to begin.</source>
        <translation>Tolvane Brevok installe vos plug-ins dans InDesign et InCopy et les tient à jour : connectez-vous avec votre compte pour commencer.</translation>
    </message>
    <message>
        <source>The setting could not be changed</source>
        <translation>Impossible de modifier le réglage</translation>
    </message>
    <message>
        <source>not installed</source>
        <translation>non installé</translation>
    </message>
    <message>
        <source>update available</source>
        <translation>mise à jour disponible</translation>
    </message>
    <message>
        <source>up to date</source>
        <translation>à jour</translation>
    </message>
    <message>
        <source>Remove %1?</source>
        <translation>Supprimer %1 ?</translation>
    </message>
    <message>
        <source>It is removed from all your applications.</source>
        <translation>Il sera supprimé de toutes vos applications.</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Arrêter</translation>
    </message>
    <message>
        <source>Update All</source>
        <translation>Tout mettre à jour</translation>
    </message>
    <message>
        <source>Stop after the current Plug-In</source>
        <translation>Arrêter après le plug-in en cours</translation>
    </message>
    <message>
        <source>Stopping after the current Plug-In…</source>
        <translation>Arrêt après le plug-in en cours…</translation>
    </message>
    <message>
        <source>Updating %1 of %2…</source>
        <translation>Mise à jour : %1 sur %2…</translation>
    </message>
    <message>
        <source>Search Plug-Ins</source>
        <translation>Rechercher des plug-ins</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>Rechercher</translation>
    </message>
    <message>
        <source>No Plug-In has such a name.</source>
        <translation>Aucun plug-in ne porte ce nom.</translation>
    </message>
    <message>
        <source>&amp;Undo</source>
        <translation>Ré&amp;tablir</translation>
    </message>
    <message>
        <source>Removed %1.</source>
        <translation>%1 a été supprimé.</translation>
    </message>
    <message>
        <source>Removed %1 targets.</source>
        <translation>%1 cibles ont été supprimées.</translation>
    </message>
    <message>
        <source>'%1' is already in the list.</source>
        <translation>« %1 » figure déjà dans la liste.</translation>
    </message>
    <message>
        <source>No known version of InDesign or InCopy stands beside this folder. Choose the application and its version.</source>
        <translation>Aucune version connue d’InDesign ou d’InCopy ne se trouve à côté de ce dossier. Choisissez l’application et sa version.</translation>
    </message>
    <message>
        <source>Used by scheduled updates, which are not set up on this computer.</source>
        <translation>Utilisé par les mises à jour planifiées, qui ne sont pas configurées sur cet ordinateur.</translation>
    </message>
    <message>
        <source>Changes are kept in memory and stored as soon as possible. Reason: %1</source>
        <translation>Les modifications restent en mémoire et seront enregistrées dès que possible. Raison : %1</translation>
    </message>
    <message>
        <source>Everything that could be read is in use. The damaged file was kept as %1.</source>
        <translation>Tout ce qui était lisible est utilisé. Le fichier endommagé a été conservé sous %1.</translation>
    </message>
    <message>
        <source>The folder %1 could not be created.</source>
        <translation>Le dossier %1 n’a pas pu être créé.</translation>
    </message>
    <message>
        <source>The plug-in name &quot;%1&quot; cannot be used as a file name.</source>
        <translation>Le nom de plug-in « %1 » ne peut pas servir de nom de fichier.</translation>
    </message>
    <message>
        <source>an entry is larger than its stated size (%1)</source>
        <translation>un élément est plus volumineux qu’annoncé (%1)</translation>
    </message>
    <message>
        <source>it is not a zip archive</source>
        <translation>ce n’est pas une archive zip</translation>
    </message>
    <message>
        <source>the library for archives is missing</source>
        <translation>la bibliothèque pour les archives est absente</translation>
    </message>
    <message>
        <source>the process that speaks HTTP cannot be started</source>
        <translation>le processus HTTP ne peut pas être démarré</translation>
    </message>
    <message>
        <source>the entry points outside the folder</source>
        <translation>l’élément pointe hors du dossier</translation>
    </message>
    <message>
        <source>the entry is nested too deeply</source>
        <translation>l’élément est imbriqué trop profondément</translation>
    </message>
    <message>
        <source>the entry would run with another user&apos;s rights</source>
        <translation>l’élément s’exécuterait avec les droits d’un autre utilisateur</translation>
    </message>
    <message>
        <source>the entry is a link that points outside the folder</source>
        <translation>l’élément est un lien qui pointe hors du dossier</translation>
    </message>
    <message>
        <source>its unpacked contents are too large</source>
        <translation>son contenu extrait est trop volumineux</translation>
    </message>
    <message>
        <source>the folder no longer exists</source>
        <translation>le dossier n’existe plus</translation>
    </message>
    <message>
        <source>the archive contains no %1</source>
        <translation>l’archive ne contient pas %1</translation>
    </message>
    <message>
        <source>the archive does not match the catalogue</source>
        <translation>l’archive diffère du catalogue</translation>
    </message>
    <message>
        <source>its unpacked contents are too large for the size of the archive</source>
        <translation>son contenu extrait est trop volumineux par rapport à la taille de l’archive</translation>
    </message>
    <message>
        <source>the entry is inside something that is not a folder</source>
        <translation>l’élément se trouve dans autre chose qu’un dossier</translation>
    </message>
    <message>
        <source>A secure connection to the server could not be established: %1</source>
        <translation>Impossible d’établir une connexion sécurisée avec le serveur : %1</translation>
    </message>
    <message>
        <source>The server&apos;s certificate is not trusted: %1</source>
        <translation>Le certificat du serveur n’est pas approuvé : %1</translation>
    </message>
    <message>
        <source>Reload Icons</source>
        <translation>Recharger les icônes</translation>
    </message>
    <message>
        <source>Sign in to install Plug-Ins with this account and to keep them up to date.</source>
        <translation>Connectez-vous pour installer des plug-ins avec ce compte et les tenir à jour.</translation>
    </message>
    <message>
        <source>&amp;Email:</source>
        <translation>&amp;E-mail :</translation>
    </message>
    <message>
        <source>&amp;Update Plug-Ins automatically</source>
        <translation>Mettre à jour les plug-ins a&amp;utomatiquement</translation>
    </message>
    <message>
        <source>This setting is managed by your administrator.</source>
        <translation>Ce réglage est géré par votre administrateur.</translation>
    </message>
    <message>
        <source>Plug-Ins are installed into the enabled folders.</source>
        <translation>Les plug-ins sont installés dans les dossiers activés.</translation>
    </message>
    <message>
        <source>Neither InDesign nor InCopy was found. Add the Plug-Ins folder of the application.</source>
        <translation>Ni InDesign ni InCopy n’a été trouvé. Ajoutez le dossier Plug-Ins de l’application.</translation>
    </message>
    <message>
        <source>Downloading %1 of %2 kB</source>
        <translation>Téléchargement de %1 sur %2 ko</translation>
    </message>
    <message>
        <source>Downloading %1 kB</source>
        <translation>Téléchargement de %1 ko</translation>
    </message>
    <message>
        <source>Not available for your applications</source>
        <translation>Aucune version pour vos applications</translation>
    </message>
    <message>
        <source>&amp;Email address</source>
        <translation>Adresse &amp;e-mail</translation>
    </message>
    <message>
        <source>Email address</source>
        <translation>Adresse e-mail</translation>
    </message>
    <message>
        <source>Sign in to install your Plug-Ins and keep them up to date.</source>
        <translation>Connectez-vous pour installer vos plug-ins et les tenir à jour.</translation>
    </message>
    <message>
        <source>The service is not responding</source>
        <translation>Le service ne répond pas</translation>
    </message>
    <message>
        <source>No response since %1. Your installed Plug-Ins keep working.</source>
        <translation>Aucune réponse depuis %1. Vos plug-ins installés continuent de fonctionner.</translation>
    </message>
    <message>
        <source>InDesign and InCopy not found</source>
        <translation>InDesign et InCopy introuvables</translation>
    </message>
    <message>
        <source>Choose the applications to install Plug-Ins into.</source>
        <translation>Choisissez où installer les plug-ins.</translation>
    </message>
    <message>
        <source>The list is being loaded from the service.</source>
        <translation>La liste est en cours de chargement depuis le service.</translation>
    </message>
    <message>
        <source>No Plug-Ins are available for this account.</source>
        <translation>Aucun plug-in n’est disponible pour ce compte.</translation>
    </message>
    <message>
        <source>&apos;%1&apos; is not an absolute path.</source>
        <translation>« %1 » n’est pas un chemin absolu.</translation>
    </message>
    <message>
        <source>&apos;%1&apos; is not a version: enter the application&apos;s version times ten, from %2 to %3, such as 140 for 14.0.</source>
        <translation>« %1 » n’est pas une version : indiquez la version de l’application multipliée par dix, de %2 à %3, par exemple 140 pour 14.0.</translation>
    </message>
    <message>
        <source>&apos;%1&apos; is not responding. Try again when its disk or server responds.</source>
        <translation>« %1 » ne répond pas. Réessayez lorsque son disque ou son serveur répondra.</translation>
    </message>
    <message>
        <source>&apos;%1&apos; is not a folder.</source>
        <translation>« %1 » n’est pas un dossier.</translation>
    </message>
    <message>
        <source>&apos;%1&apos; is the root of the file system, which cannot be used as a Plug-Ins folder.</source>
        <translation>« %1 » est la racine du système de fichiers, qui ne peut pas servir de dossier Plug-Ins.</translation>
    </message>
    <message>
        <source>The application&apos;s state, its logs and its latest crash reports are included.</source>
        <translation>L’état, les journaux et les rapports de plantage les plus récents de cette application sont joints.</translation>
    </message>
    <message>
        <source>This is everything that is sent if you send the report now (%1 bytes).</source>
        <translation>Voici tout ce qui est envoyé si vous envoyez le rapport maintenant (%1 octets).</translation>
    </message>
    <message>
        <source>Your &amp;email address:</source>
        <translation>Votre adresse &amp;e-mail :</translation>
    </message>
    <message>
        <source>Could not check for updates to Tolvane Brevok.</source>
        <translation>Impossible de rechercher des mises à jour de Tolvane Brevok.</translation>
    </message>
    <message>
        <source>Version %1 is the latest version.</source>
        <translation>La version %1 est la plus récente.</translation>
    </message>
    <message>
        <source>This version cannot check for updates.</source>
        <translation>Cette version ne permet pas de rechercher des mises à jour.</translation>
    </message>
    <message>
        <source>The system&apos;s software service (PackageKit) is not available.</source>
        <translation>Le service logiciel du système (PackageKit) n’est pas disponible.</translation>
    </message>
    <message>
        <source>The system&apos;s software service did not install the package: %1</source>
        <translation>Le service logiciel du système n’a pas installé le paquet : %1</translation>
    </message>
    <message>
        <source>The system&apos;s software service stopped before the package was installed.</source>
        <translation>Le service logiciel du système s’est arrêté avant d’avoir installé le paquet.</translation>
    </message>
    <message>
        <source>Could not read the file &quot;%1&quot;</source>
        <translation>Impossible de lire le fichier « %1 »</translation>
    </message>
    <message>
        <source>The privileged helper is not responding.</source>
        <translation>Le programme auxiliaire privilégié ne répond pas.</translation>
    </message>
    <message>
        <source>Administrator approval is required and was not given.</source>
        <translation>L’accord d’un administrateur est requis et n’a pas été donné.</translation>
    </message>
    <message>
        <source>Setting up the privileged helper ended without a result.</source>
        <translation>La configuration du programme auxiliaire privilégié s’est terminée sans résultat.</translation>
    </message>
    <message>
        <source>The privileged helper was installed but does not start.</source>
        <translation>Le programme auxiliaire privilégié a été installé, mais ne démarre pas.</translation>
    </message>
    <message>
        <source>The checksum in the catalogue cannot be read.</source>
        <translation>La somme de contrôle indiquée dans le catalogue est illisible.</translation>
    </message>
    <message>
        <source>The download does not match the catalogue.</source>
        <translation>Le téléchargement diffère du catalogue.</translation>
    </message>
    <message>
        <source>the reason is not known</source>
        <translation>la raison n’est pas connue</translation>
    </message>
    <message>
        <source>something else has taken the folder&apos;s place</source>
        <translation>autre chose se trouve à la place du dossier</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <comment>what failed, and why</comment>
        <translation>%1 : %2</translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <comment>why something failed, and the details</comment>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>InDesign&apos;s latest crash report is included too.</source>
        <translation>Le rapport de plantage le plus récent d’InDesign est également joint.</translation>
    </message>
    <message>
        <source>What you wrote</source>
        <translation>Ce que vous avez écrit</translation>
    </message>
    <message>
        <source>The application</source>
        <translation>L’application</translation>
    </message>
    <message>
        <source>Logs</source>
        <translation>Journaux</translation>
    </message>
    <message>
        <source>Crash reports</source>
        <translation>Rapports de plantage</translation>
    </message>
    <message>
        <source>Your Plug-Ins were changed</source>
        <translation>Vos plug-ins ont été modifiés</translation>
    </message>
    <message>
        <source>Installed: %1</source>
        <translation>Installation : %1</translation>
    </message>
    <message>
        <source>Removed: %1</source>
        <translation>Suppression : %1</translation>
    </message>
    <message>
        <source>Waiting for an update: %1</source>
        <translation>Mise à jour disponible : %1</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Ouvrir</translation>
    </message>
    <message>
        <source>Used by scheduled updates. Next: %1.</source>
        <translation>Utilisé par les mises à jour planifiées. Prochaine : %1.</translation>
    </message>
    <message>
        <source>Clear Search</source>
        <translation>Effacer la recherche</translation>
    </message>
</context>
</TS>
