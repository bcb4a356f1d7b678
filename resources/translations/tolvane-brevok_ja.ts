<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ja" sourcelanguage="en">
<context>
    <name>Brevok</name>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Another copy of Tolvane Brevok application is already running.</source>
        <translation>Tolvane Brevok は既に起動しています。</translation>
    </message>
    <message>
        <source>Only one copy can be run at a time. Quit running Tolvane Brevok to run this copy of Tolvane Brevok application.</source>
        <translation>同時に起動できるのは 1 つだけです。この Tolvane Brevok を起動するには、起動中の Tolvane Brevok を終了してください。</translation>
    </message>
    <message>
        <source>Tolvane Brevok cannot store its data</source>
        <translation>Tolvane Brevok はデータを保存できません</translation>
    </message>
    <message>
        <source>The stored data of Tolvane Brevok was damaged</source>
        <translation>Tolvane Brevok の保存データが破損していました</translation>
    </message>
    <message>
        <source>Failed to update Products data</source>
        <translation>製品データを更新できませんでした</translation>
    </message>
    <message>
        <source>Failed to update Plug-Ins data</source>
        <translation>プラグインデータを更新できませんでした</translation>
    </message>
    <message>
        <source>Installer detected one or more unfinished actions. Do you want to finish or discard those actions?</source>
        <translation>未完了の操作が 1 つ以上見つかりました。これらの操作を完了しますか、それとも破棄しますか？</translation>
    </message>
    <message>
        <source>Tolvane Brevok application probably crashed, or was forced to quit. Unfinished install/uninstall actions are left overs from previous session.</source>
        <translation>Tolvane Brevok がクラッシュしたか、強制終了された可能性があります。前回のセッションのインストールまたは削除の操作が未完了のまま残っています。</translation>
    </message>
    <message>
        <source>Discard Actions</source>
        <translation>操作を破棄</translation>
    </message>
    <message>
        <source>Finish Actions</source>
        <translation>操作を完了</translation>
    </message>
    <message>
        <source>Unable to contact the Tolvane Brevok server for %1 days.</source>
        <translation>%1 日間 Tolvane Brevok サーバーに接続できません。</translation>
    </message>
    <message>
        <source>You&apos;re up-to-date!</source>
        <translation>最新の状態です。</translation>
    </message>
    <message>
        <source>There are no new Plug-In updates available.</source>
        <translation>新しいプラグインのアップデートはありません。</translation>
    </message>
    <message>
        <source>Plug-In update available!</source>
        <translation>プラグインのアップデートがあります。</translation>
    </message>
    <message>
        <source>%1 Plug-In update is available.</source>
        <translation>プラグイン「%1」のアップデートがあります。</translation>
    </message>
    <message>
        <source>Plug-In updates available!</source>
        <translation>プラグインのアップデートがあります。</translation>
    </message>
    <message>
        <source>You have %1 Plug-In updates available.</source>
        <translation>%1 個のプラグインのアップデートがあります。</translation>
    </message>
    <message>
        <source>Incorrect input to installPlugin:</source>
        <translation>installPlugin: への入力が正しくありません</translation>
    </message>
    <message>
        <source>Incorrect input to removeItemAtPath:</source>
        <translation>removeItemAtPath: への入力が正しくありません</translation>
    </message>
    <message>
        <source>The workspace could not be installed at %1.</source>
        <translation>ワークスペースを %1 にインストールできませんでした。</translation>
    </message>
    <message>
        <source>Failed to install &apos;%1.InDesignPlugin&apos;!</source>
        <translation>「%1.InDesignPlugin」をインストールできませんでした。</translation>
    </message>
    <message>
        <source>Multiple errors have occured. Please contact Tolvane support.</source>
        <translation>複数のエラーが発生しました。Tolvane サポートにお問い合わせください。</translation>
    </message>
    <message>
        <source>Error: %1</source>
        <translation>エラー: %1</translation>
    </message>
    <message>
        <source>The folder %1 is not writable.</source>
        <translation>フォルダー %1 に書き込めません。</translation>
    </message>
    <message>
        <source>Failed to download %1, from %2</source>
        <translation>%1 を %2 からダウンロードできませんでした</translation>
    </message>
    <message>
        <source>To take advantage of newly installed Plug-Ins, restart %1.

Do you want to quit %1 now or do it yourself later?</source>
        <translation>新しくインストールしたプラグインを使用するには、%1 を再起動してください。

今すぐ %1 を終了しますか、それとも後で自分で終了しますか？</translation>
    </message>
    <message>
        <source>Quit %1</source>
        <translation>%1 を終了</translation>
    </message>
    <message>
        <source>Continue</source>
        <translation>続ける</translation>
    </message>
    <message>
        <source>Adobe %1 %2 is running.</source>
        <translation>Adobe %1 %2 が起動しています。</translation>
    </message>
    <message>
        <source>Removing Plug-Ins from running Adobe %1 can lead to unexpected behaviour, you should quit %1 before proceeding.</source>
        <translation>起動中の Adobe %1 からプラグインを削除すると、予期しない動作をすることがあります。続ける前に %1 を終了してください。</translation>
    </message>
    <message>
        <source>Could not create the folder &quot;%1&quot;</source>
        <translation>フォルダー「%1」を作成できませんでした</translation>
    </message>
    <message>
        <source>Could not remove &quot;%1&quot;</source>
        <translation>「%1」を削除できませんでした</translation>
    </message>
    <message>
        <source>Could not copy &quot;%1&quot; to &quot;%2&quot;</source>
        <translation>「%1」を「%2」にコピーできませんでした</translation>
    </message>
    <message>
        <source>Could not copy &quot;%1&quot; to &quot;%2&quot; (at &quot;%3&quot;)</source>
        <translation>「%1」を「%2」にコピーできませんでした（「%3」）</translation>
    </message>
    <message>
        <source>Could not open the archive &quot;%1&quot;</source>
        <translation>アーカイブ「%1」を開けませんでした</translation>
    </message>
    <message>
        <source>Could not open the folder &quot;%1&quot;</source>
        <translation>フォルダー「%1」を開けませんでした</translation>
    </message>
    <message>
        <source>Could not change the owner and permissions of &quot;%1&quot;</source>
        <translation>「%1」の所有者とアクセス権を変更できませんでした</translation>
    </message>
    <message>
        <source>Could not unpack &quot;%1&quot; into &quot;%2&quot;</source>
        <translation>「%1」を「%2」に展開できませんでした</translation>
    </message>
    <message>
        <source>the process that speaks HTTP has ended</source>
        <translation>HTTP 通信を行うプロセスが終了しました</translation>
    </message>
    <message>
        <source>it has more than %1 entries</source>
        <translation>項目が %1 個を超えています</translation>
    </message>
    <message>
        <source>an entry has no name</source>
        <translation>名前のない項目があります</translation>
    </message>
    <message>
        <source>the name of the entry is not relative</source>
        <translation>項目の名前が相対パスではありません</translation>
    </message>
    <message>
        <source>the name of the entry is too long</source>
        <translation>項目の名前が長すぎます</translation>
    </message>
    <message>
        <source>the entry is encrypted</source>
        <translation>項目が暗号化されています</translation>
    </message>
    <message>
        <source>it has too many links</source>
        <translation>リンクが多すぎます</translation>
    </message>
    <message>
        <source>the entry is neither a file nor a folder</source>
        <translation>項目がファイルでもフォルダーでもありません</translation>
    </message>
    <message>
        <source>no space left on the disk</source>
        <translation>ディスクに空き容量がありません</translation>
    </message>
    <message>
        <source>no permission to change the folder</source>
        <translation>フォルダーを変更する権限がありません</translation>
    </message>
    <message>
        <source>the disk is write-protected</source>
        <translation>ディスクは書き込み禁止です</translation>
    </message>
    <message>
        <source>the disk reports an error</source>
        <translation>ディスクがエラーを報告しています</translation>
    </message>
    <message>
        <source>the archive cannot be read</source>
        <translation>アーカイブを読み取れません</translation>
    </message>
    <message>
        <source>the archive is refused: %1</source>
        <translation>アーカイブは拒否されました: %1</translation>
    </message>
    <message>
        <source>the archive is damaged</source>
        <translation>アーカイブが壊れています</translation>
    </message>
    <message>
        <source>the entry occurs twice</source>
        <translation>項目が重複しています</translation>
    </message>
    <message>
        <source>The downloaded file cannot be saved: %1</source>
        <translation>ダウンロードしたファイルを保存できません: %1</translation>
    </message>
    <message>
        <source>Server responded with HTTP code: %1.</source>
        <translation>サーバーの応答の HTTP コード: %1。</translation>
    </message>
    <message>
        <source>The download is longer than the expected %1 bytes.</source>
        <translation>ダウンロードが想定の %1 バイトを超えています。</translation>
    </message>
    <message>
        <source>The download has %1 of the expected %2 bytes.</source>
        <translation>ダウンロードできたのは %2 バイト中 %1 バイトだけです。</translation>
    </message>
    <message>
        <source>Network is unreachable. Is your internet connection down?</source>
        <translation>ネットワークに接続できません。インターネット接続が切れていませんか？</translation>
    </message>
    <message>
        <source>Connection Error</source>
        <translation>接続エラー</translation>
    </message>
    <message>
        <source>Authentication Error</source>
        <translation>認証エラー</translation>
    </message>
    <message>
        <source>There is critical update of Tolvane Brevok application.</source>
        <translation>Tolvane Brevok の重要なアップデートがあります。</translation>
    </message>
    <message>
        <source>Unexpected server response.</source>
        <translation>サーバーから予期しない応答がありました。</translation>
    </message>
    <message>
        <source>The server redirected the request to another server.</source>
        <translation>サーバーがリクエストを別のサーバーにリダイレクトしました。</translation>
    </message>
    <message>
        <source>The server redirected the request in a way that would lose it.</source>
        <translation>サーバーが、リクエストの内容が失われる形でリダイレクトしました。</translation>
    </message>
    <message>
        <source>The server redirected the request to an address that is not secure.</source>
        <translation>サーバーがリクエストを安全でないアドレスにリダイレクトしました。</translation>
    </message>
    <message>
        <source>The server sent more data than expected.</source>
        <translation>サーバーが想定より多くのデータを送信しました。</translation>
    </message>
    <message>
        <source>Wrong user name or password.</source>
        <translation>ユーザー名またはパスワードが違います。</translation>
    </message>
    <message>
        <source>Insufficient rights to access Tolvane Brevok verification server.</source>
        <translation>Tolvane Brevok 検証サーバーにアクセスする権限がありません。</translation>
    </message>
    <message>
        <source>The requested resource could not be found.
Server might be temporarily inaccessible.</source>
        <translation>要求されたリソースが見つかりませんでした。
サーバーに一時的に接続できない可能性があります。</translation>
    </message>
    <message>
        <source>continue</source>
        <translation>継続</translation>
    </message>
    <message>
        <source>switching protocols</source>
        <translation>プロトコルの切り替え</translation>
    </message>
    <message>
        <source>no error</source>
        <translation>エラーなし</translation>
    </message>
    <message>
        <source>created</source>
        <translation>作成済み</translation>
    </message>
    <message>
        <source>accepted</source>
        <translation>受理</translation>
    </message>
    <message>
        <source>non-authoritative information</source>
        <translation>提供元以外からの情報</translation>
    </message>
    <message>
        <source>no content</source>
        <translation>内容なし</translation>
    </message>
    <message>
        <source>reset content</source>
        <translation>内容のリセット</translation>
    </message>
    <message>
        <source>partial content</source>
        <translation>部分的な内容</translation>
    </message>
    <message>
        <source>multiple choices</source>
        <translation>複数の選択肢</translation>
    </message>
    <message>
        <source>moved permanently</source>
        <translation>恒久的に移動</translation>
    </message>
    <message>
        <source>found</source>
        <translation>発見</translation>
    </message>
    <message>
        <source>see other</source>
        <translation>他を参照</translation>
    </message>
    <message>
        <source>not modified</source>
        <translation>変更なし</translation>
    </message>
    <message>
        <source>needs proxy</source>
        <translation>プロキシが必要</translation>
    </message>
    <message>
        <source>temporarily redirected</source>
        <translation>一時的なリダイレクト</translation>
    </message>
    <message>
        <source>bad request</source>
        <translation>不正なリクエスト</translation>
    </message>
    <message>
        <source>unauthorized</source>
        <translation>未認証</translation>
    </message>
    <message>
        <source>payment required</source>
        <translation>支払いが必要</translation>
    </message>
    <message>
        <source>forbidden</source>
        <translation>禁止</translation>
    </message>
    <message>
        <source>not found</source>
        <translation>見つかりません</translation>
    </message>
    <message>
        <source>method not allowed</source>
        <translation>許可されていないメソッド</translation>
    </message>
    <message>
        <source>unacceptable</source>
        <translation>受理できません</translation>
    </message>
    <message>
        <source>proxy authentication required</source>
        <translation>プロキシ認証が必要</translation>
    </message>
    <message>
        <source>request timed out</source>
        <translation>リクエストのタイムアウト</translation>
    </message>
    <message>
        <source>conflict</source>
        <translation>競合</translation>
    </message>
    <message>
        <source>no longer exists</source>
        <translation>もう存在しません</translation>
    </message>
    <message>
        <source>length required</source>
        <translation>長さが必要</translation>
    </message>
    <message>
        <source>precondition failed</source>
        <translation>前提条件の不成立</translation>
    </message>
    <message>
        <source>request too large</source>
        <translation>リクエストが大きすぎます</translation>
    </message>
    <message>
        <source>requested URL too long</source>
        <translation>要求された URL が長すぎます</translation>
    </message>
    <message>
        <source>unsupported media type</source>
        <translation>未対応のメディアタイプ</translation>
    </message>
    <message>
        <source>requested range not satisfiable</source>
        <translation>要求された範囲を満たせません</translation>
    </message>
    <message>
        <source>expectation failed</source>
        <translation>要求された条件を満たせません</translation>
    </message>
    <message>
        <source>internal server error</source>
        <translation>サーバー内部エラー</translation>
    </message>
    <message>
        <source>unimplemented</source>
        <translation>未実装</translation>
    </message>
    <message>
        <source>bad gateway</source>
        <translation>不正なゲートウェイ</translation>
    </message>
    <message>
        <source>service unavailable</source>
        <translation>サービス利用不可</translation>
    </message>
    <message>
        <source>gateway timed out</source>
        <translation>ゲートウェイのタイムアウト</translation>
    </message>
    <message>
        <source>unsupported version</source>
        <translation>未対応のバージョン</translation>
    </message>
    <message>
        <source>informational</source>
        <translation>情報</translation>
    </message>
    <message>
        <source>success</source>
        <translation>成功</translation>
    </message>
    <message>
        <source>redirected</source>
        <translation>リダイレクト</translation>
    </message>
    <message>
        <source>client error</source>
        <translation>クライアントエラー</translation>
    </message>
    <message>
        <source>server error</source>
        <translation>サーバーエラー</translation>
    </message>
    <message>
        <source>Invalid session Id. You have been logged out!
Please try to sign-in again.</source>
        <translation>セッション ID が無効です。サインアウトされました。
もう一度サインインしてください。</translation>
    </message>
    <message>
        <source>Security Violation Error. You have been logged out!
Please try to sign-in again.</source>
        <translation>セキュリティ違反エラー。サインアウトされました。
もう一度サインインしてください。</translation>
    </message>
    <message>
        <source>Internal Server Error. Please contact Tolvane support.</source>
        <translation>サーバー内部エラー。Tolvane サポートにお問い合わせください。</translation>
    </message>
    <message>
        <source>The request timed out.</source>
        <translation>リクエストがタイムアウトしました。</translation>
    </message>
    <message>
        <source>A server with the specified hostname could not be found.</source>
        <translation>指定された名前のサーバーが見つかりませんでした。</translation>
    </message>
    <message>
        <source>Could not connect to the server.</source>
        <translation>サーバーに接続できませんでした。</translation>
    </message>
    <message>
        <source>Could not connect to the proxy server.</source>
        <translation>プロキシサーバーに接続できませんでした。</translation>
    </message>
    <message>
        <source>The network connection was lost.</source>
        <translation>ネットワーク接続が切れました。</translation>
    </message>
    <message>
        <source>Too many HTTP redirects.</source>
        <translation>HTTP のリダイレクトが多すぎます。</translation>
    </message>
    <message>
        <source>The transfer failed: %1</source>
        <translation>転送に失敗しました: %1</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>キャンセル</translation>
    </message>
    <message>
        <source>Version %1 (%2, %3)</source>
        <translation>バージョン %1（%2、%3）</translation>
    </message>
    <message>
        <source>About %1</source>
        <translation>%1 について</translation>
    </message>
    <message>
        <source>1 update available</source>
        <translation>1 個のアップデートがあります</translation>
    </message>
    <message>
        <source>%1 updates available</source>
        <translation>%1 個のアップデートがあります</translation>
    </message>
    <message>
        <source>Remove %1</source>
        <translation>%1 を削除</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>削除</translation>
    </message>
    <message>
        <source>More about this Plug-In</source>
        <translation>このプラグインの詳細</translation>
    </message>
    <message>
        <source>%1 is in progress</source>
        <translation>%1 は処理中です</translation>
    </message>
    <message>
        <source>Download of %1</source>
        <translation>%1 のダウンロード</translation>
    </message>
    <message>
        <source>%1 %2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>Check for Plug-In Updates</source>
        <translation>プラグインのアップデートを確認</translation>
    </message>
    <message>
        <source>Check for Application Update…</source>
        <translation>アプリケーションのアップデートを確認…</translation>
    </message>
    <message>
        <source>My Account</source>
        <translation>マイアカウント</translation>
    </message>
    <message>
        <source>Preferences…</source>
        <translation>環境設定…</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>ヘルプ</translation>
    </message>
    <message>
        <source>Report a Bug…</source>
        <translation>問題を報告…</translation>
    </message>
    <message>
        <source>About Tolvane Brevok</source>
        <translation>Tolvane Brevok について</translation>
    </message>
    <message>
        <source>Quit…</source>
        <translation>終了…</translation>
    </message>
    <message>
        <source>Tolvane Brevok</source>
        <translation>Tolvane Brevok</translation>
    </message>
    <message>
        <source>Are you sure you want to quit</source>
        <translation>本当に終了しますか？</translation>
    </message>
    <message>
        <source>Tolvane Brevok needs to be running to keep the Plug-Ins active.</source>
        <translation>プラグインを有効に保つには、Tolvane Brevok が起動している必要があります。</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>終了</translation>
    </message>
    <message>
        <source>Preferences</source>
        <translation>環境設定</translation>
    </message>
    <message>
        <source>Pages</source>
        <translation>ページ</translation>
    </message>
    <message>
        <source>Account</source>
        <translation>アカウント</translation>
    </message>
    <message>
        <source>Targets</source>
        <translation>インストール先</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>設定</translation>
    </message>
    <message>
        <source>&amp;Password:</source>
        <translation>パスワード(&amp;P):</translation>
    </message>
    <message>
        <source>Create Account…</source>
        <translation>アカウントを作成…</translation>
    </message>
    <message>
        <source>Start at &amp;login</source>
        <translation>ログイン時に起動(&amp;L)</translation>
    </message>
    <message>
        <source>Show &amp;notifications</source>
        <translation>通知を表示(&amp;N)</translation>
    </message>
    <message>
        <source>&amp;Check for new versions of this application</source>
        <translation>このアプリケーションの新しいバージョンを確認(&amp;C)</translation>
    </message>
    <message>
        <source>Write a &amp;detailed log</source>
        <translation>詳細なログを記録(&amp;D)</translation>
    </message>
    <message>
        <source>&amp;Add…</source>
        <translation>追加(&amp;A)…</translation>
    </message>
    <message>
        <source>&amp;Remove</source>
        <translation>削除(&amp;R)</translation>
    </message>
    <message>
        <source>Add Target</source>
        <translation>インストール先を追加</translation>
    </message>
    <message>
        <source>Chose Plug-Ins directory inside Adobe InCopy/InDesign application folder.</source>
        <translation>Adobe InCopy/InDesign のアプリケーションフォルダーにある Plug-Ins フォルダーを選択してください。</translation>
    </message>
    <message>
        <source>&amp;Folder:</source>
        <translation>フォルダー(&amp;F):</translation>
    </message>
    <message>
        <source>&amp;Browse…</source>
        <translation>参照(&amp;B)…</translation>
    </message>
    <message>
        <source>&amp;Application:</source>
        <translation>アプリケーション(&amp;A):</translation>
    </message>
    <message>
        <source>&amp;Version:</source>
        <translation>バージョン(&amp;V):</translation>
    </message>
    <message>
        <source>Sign Out</source>
        <translation>サインアウト</translation>
    </message>
    <message>
        <source>Sign In</source>
        <translation>サインイン</translation>
    </message>
    <message>
        <source>Contacting the service…</source>
        <translation>サービスに接続中…</translation>
    </message>
    <message>
        <source>Signed in as %1.</source>
        <translation>%1 としてサインインしています。</translation>
    </message>
    <message>
        <source>Not signed in.</source>
        <translation>サインインしていません。</translation>
    </message>
    <message>
        <source>Checking for Updates</source>
        <translation>アップデートの確認</translation>
    </message>
    <message>
        <source>Checking for updates…</source>
        <translation>アップデートを確認中…</translation>
    </message>
    <message>
        <source>Downloading %1 of %2 GB</source>
        <translation>ダウンロード中 %1 / %2 GB</translation>
    </message>
    <message>
        <source>Downloading %1 GB</source>
        <translation>ダウンロード中 %1 GB</translation>
    </message>
    <message>
        <source>Downloading %1 of %2 MB</source>
        <translation>ダウンロード中 %1 / %2 MB</translation>
    </message>
    <message>
        <source>Downloading %1 MB</source>
        <translation>ダウンロード中 %1 MB</translation>
    </message>
    <message>
        <source>Install</source>
        <translation>インストール</translation>
    </message>
    <message>
        <source>Update</source>
        <translation>アップデート</translation>
    </message>
    <message>
        <source>Up To Date</source>
        <translation>最新</translation>
    </message>
    <message>
        <source>Partly installed</source>
        <translation>一部インストール済み</translation>
    </message>
    <message>
        <source>Partly outdated</source>
        <translation>一部が古いバージョンです</translation>
    </message>
    <message>
        <source>Working…</source>
        <translation>処理中…</translation>
    </message>
    <message>
        <source>Installing…</source>
        <translation>インストール中…</translation>
    </message>
    <message>
        <source>Sign in</source>
        <translation>サインイン</translation>
    </message>
    <message>
        <source>&amp;Password</source>
        <translation>パスワード(&amp;P)</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>パスワード</translation>
    </message>
    <message>
        <source>Contacting the service</source>
        <translation>サービスに接続中</translation>
    </message>
    <message>
        <source>Options</source>
        <translation>オプション</translation>
    </message>
    <message>
        <source>Plug-Ins</source>
        <translation>プラグイン</translation>
    </message>
    <message>
        <source>You are signed out</source>
        <translation>サインインしていません</translation>
    </message>
    <message>
        <source>Sign In…</source>
        <translation>サインイン…</translation>
    </message>
    <message>
        <source>No network connection</source>
        <translation>ネットワーク接続がありません</translation>
    </message>
    <message>
        <source>Connect to the internet to install and update Plug-Ins.</source>
        <translation>プラグインのインストールとアップデートを行うには、インターネットに接続してください。</translation>
    </message>
    <message>
        <source>Try Again</source>
        <translation>再試行</translation>
    </message>
    <message>
        <source>Choose Applications…</source>
        <translation>アプリケーションを選択…</translation>
    </message>
    <message>
        <source>Loading Plug-Ins…</source>
        <translation>プラグインを読み込み中…</translation>
    </message>
    <message>
        <source>No Plug-Ins yet</source>
        <translation>プラグインはまだありません</translation>
    </message>
    <message>
        <source>Check Again</source>
        <translation>もう一度確認</translation>
    </message>
    <message>
        <source>Not signed in</source>
        <translation>サインインしていません</translation>
    </message>
    <message>
        <source>Signed in</source>
        <translation>サインイン済み</translation>
    </message>
    <message>
        <source>1 update</source>
        <translation>1 個のアップデート</translation>
    </message>
    <message>
        <source>%1 updates</source>
        <translation>%1 個のアップデート</translation>
    </message>
    <message>
        <source>Other…</source>
        <translation>その他…</translation>
    </message>
    <message>
        <source>None</source>
        <translation>なし</translation>
    </message>
    <message>
        <source>Chose Plug-Ins directory</source>
        <translation>Plug-Ins フォルダーを選択</translation>
    </message>
    <message>
        <source>There is no folder &apos;%1&apos;.</source>
        <translation>フォルダー「%1」はありません。</translation>
    </message>
    <message>
        <source>Checking the folder…</source>
        <translation>フォルダーを確認中…</translation>
    </message>
    <message>
        <source>Invalid Plug-Ins path selected!</source>
        <translation>選択されたパスは有効な Plug-Ins フォルダーではありません。</translation>
    </message>
    <message>
        <source>The path you specified doesn&apos;t look like a valid Adobe InDesign Plug-Ins folder. Do you want to use it anyway?</source>
        <translation>指定されたパスは有効な Adobe InDesign の Plug-Ins フォルダーではないようです。それでも使用しますか？</translation>
    </message>
    <message>
        <source>Enable %1</source>
        <translation>%1 を有効にする</translation>
    </message>
    <message>
        <source>Enabled</source>
        <translation>有効</translation>
    </message>
    <message>
        <source>Plug-Ins folder</source>
        <translation>Plug-Ins フォルダー</translation>
    </message>
    <message>
        <source>Checking the connection…</source>
        <translation>接続を確認中…</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>閉じる</translation>
    </message>
    <message>
        <source>Failed to send error report</source>
        <translation>エラーレポートを送信できませんでした</translation>
    </message>
    <message>
        <source>Gathering the report…</source>
        <translation>レポートを準備中…</translation>
    </message>
    <message>
        <source>Invalid email address!</source>
        <translation>メールアドレスが正しくありません。</translation>
    </message>
    <message>
        <source>Missing email address!</source>
        <translation>メールアドレスが入力されていません。</translation>
    </message>
    <message>
        <source>Missing problem description!</source>
        <translation>問題の説明が入力されていません。</translation>
    </message>
    <message>
        <source>Please contact Tolvane support.</source>
        <translation>Tolvane サポートにお問い合わせください。</translation>
    </message>
    <message>
        <source>Please describe the problem and what were you doing when the problem came up.</source>
        <translation>どのような問題が、何をしているときに起きたかを入力してください。</translation>
    </message>
    <message>
        <source>Please enter a valid email address so we can respond to your message.</source>
        <translation>ご返信できるように、有効なメールアドレスを入力してください。</translation>
    </message>
    <message>
        <source>Received %1 bytes (%2)

%3</source>
        <translation>%1 バイトを受信しました（%2）

%3</translation>
    </message>
    <message>
        <source>Report a Bug</source>
        <translation>問題を報告</translation>
    </message>
    <message>
        <source>Send</source>
        <translation>送信</translation>
    </message>
    <message>
        <source>Sending the report…</source>
        <translation>レポートを送信中…</translation>
    </message>
    <message>
        <source>Server response: %1

%2</source>
        <translation>サーバーの応答: %1

%2</translation>
    </message>
    <message>
        <source>Show what will be sent</source>
        <translation>送信される内容を表示</translation>
    </message>
    <message>
        <source>Thank you for reporting this issue.</source>
        <translation>問題をご報告いただきありがとうございます。</translation>
    </message>
    <message>
        <source>Tolvane Brevok servers are unreachable.</source>
        <translation>Tolvane Brevok のサーバーに接続できません。</translation>
    </message>
    <message>
        <source>Tolvane support team will contact you shortly.</source>
        <translation>まもなく Tolvane サポートチームからご連絡します。</translation>
    </message>
    <message>
        <source>Unknown</source>
        <translation>不明</translation>
    </message>
    <message>
        <source>Unknown connection error.</source>
        <translation>不明な接続エラーです。</translation>
    </message>
    <message>
        <source>What went &amp;wrong, and what were you doing when the problem came up?</source>
        <translation>どのような問題が、何をしているときに起きましたか？(&amp;W)</translation>
    </message>
    <message>
        <source>What will be sent</source>
        <translation>送信される内容</translation>
    </message>
    <message>
        <source>Software Update</source>
        <translation>ソフトウェアアップデート</translation>
    </message>
    <message>
        <source>Release notes</source>
        <translation>リリースノート</translation>
    </message>
    <message>
        <source>A new version of Tolvane Brevok is available.</source>
        <translation>Tolvane Brevok の新しいバージョンがあります。</translation>
    </message>
    <message>
        <source>Version %1 is available; you have version %2. Would you like to install it now?</source>
        <translation>バージョン %1 を利用できます（現在のバージョンは %2）。今すぐインストールしますか？</translation>
    </message>
    <message>
        <source>Install Update</source>
        <translation>アップデートをインストール</translation>
    </message>
    <message>
        <source>Remind Me Later</source>
        <translation>後で通知</translation>
    </message>
    <message>
        <source>Skip This Version</source>
        <translation>このバージョンをスキップ</translation>
    </message>
    <message>
        <source>Hide</source>
        <translation>隠す</translation>
    </message>
    <message>
        <source>Downloading version %1…</source>
        <translation>バージョン %1 をダウンロード中…</translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <translation>%1 / %2</translation>
    </message>
    <message>
        <source>Verifying version %1…</source>
        <translation>バージョン %1 を検証中…</translation>
    </message>
    <message>
        <source>Installing version %1…</source>
        <translation>バージョン %1 をインストール中…</translation>
    </message>
    <message>
        <source>The system may ask for an administrator's password.</source>
        <translation>管理者のパスワードを求められることがあります。</translation>
    </message>
    <message>
        <source>Version %1 is installed.</source>
        <translation>バージョン %1 をインストールしました。</translation>
    </message>
    <message>
        <source>It will be used the next time Tolvane Brevok starts.</source>
        <translation>次に Tolvane Brevok を起動したときから使われます。</translation>
    </message>
    <message>
        <source>Version %1 was not installed.</source>
        <translation>バージョン %1 はインストールされませんでした。</translation>
    </message>
    <message>
        <source>Tolvane Brevok is up to date.</source>
        <translation>Tolvane Brevok は最新です。</translation>
    </message>
    <message>
        <source>The description of available updates cannot be read.</source>
        <translation>利用できるアップデートの情報を読み取れません。</translation>
    </message>
    <message>
        <source>Version %1 is offered at an address that is not secure. It cannot be installed.</source>
        <translation>バージョン %1 の提供元のアドレスは安全ではありません。インストールできません。</translation>
    </message>
    <message>
        <source>Version %1 is offered without a valid signature. It cannot be installed.</source>
        <translation>バージョン %1 には有効な署名がありません。インストールできません。</translation>
    </message>
    <message>
        <source>Version %1 is offered without a valid size. It cannot be installed.</source>
        <translation>バージョン %1 には有効なサイズの情報がありません。インストールできません。</translation>
    </message>
    <message>
        <source>The folder for the update cannot be used: %1</source>
        <translation>アップデート用のフォルダーを使用できません: %1</translation>
    </message>
    <message>
        <source>The downloaded file cannot be read: %1</source>
        <translation>ダウンロードしたファイルを読み取れません: %1</translation>
    </message>
    <message>
        <source>The downloaded update is not version %1 of Tolvane Brevok. It was not installed, and the file was removed.</source>
        <translation>ダウンロードしたアップデートは Tolvane Brevok のバージョン %1 ではありません。インストールせずにファイルを削除しました。</translation>
    </message>
    <message>
        <source>This copy cannot update itself. You can get the new version at %1.</source>
        <translation>このアプリケーションは自身をアップデートできません。新しいバージョンは %1 から入手してください。</translation>
    </message>
    <message>
        <source>The downloaded update is not signed by the maker of Tolvane Brevok. It was not installed, and the file was removed.</source>
        <translation>ダウンロードしたアップデートは Tolvane Brevok の開発元が署名したものではありません。インストールせずにファイルを削除しました。</translation>
    </message>
    <message>
        <source>The installation was cancelled.</source>
        <translation>インストールはキャンセルされました。</translation>
    </message>
    <message>
        <source>Could not write &quot;%1&quot;</source>
        <translation>「%1」を書き込めませんでした</translation>
    </message>
    <message>
        <source>%1 (and %2 more)</source>
        <translation>%1（ほか %2 件）</translation>
    </message>
    <message>
        <source>%1 is running</source>
        <translation>%1 が実行中です</translation>
    </message>
    <message>
        <source>another package needs it</source>
        <translation>別のパッケージが必要としています</translation>
    </message>
    <message>
        <source>it is up to date</source>
        <translation>最新です</translation>
    </message>
    <message>
        <source>Tolvane Brevok cannot read its stored data.</source>
        <translation>Tolvane Brevok は保存されたデータを読み込めません。</translation>
    </message>
    <message>
        <source>The check for Plug-In updates failed</source>
        <translation>プラグインのアップデートを確認できませんでした</translation>
    </message>
    <message>
        <source>Web Page</source>
        <translation>Web ページ</translation>
    </message>
    <message>
        <source>No browser could be started. This is the address of the page:</source>
        <translation>ブラウザーを起動できませんでした。ページのアドレスは次のとおりです:</translation>
    </message>
    <message>
        <source>Address</source>
        <translation>アドレス</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>コピー</translation>
    </message>
    <message>
        <source>Tolvane Brevok installs your Plug-Ins in InDesign and InCopy and keeps them up to date: sign in with your account to begin.</source>
        <translation>Tolvane Brevok は InDesign と InCopy にプラグインをインストールし、最新の状態に保ちます。アカウントでサインインすると始められます。</translation>
    </message>
    <message>
        <source>The setting could not be changed</source>
        <translation>設定を変更できませんでした</translation>
    </message>
    <message>
        <source>not installed</source>
        <translation>未インストール</translation>
    </message>
    <message>
        <source>update available</source>
        <translation>アップデートあり</translation>
    </message>
    <message>
        <source>up to date</source>
        <translation>最新</translation>
    </message>
    <message>
        <source>Remove %1?</source>
        <translation>%1 を削除しますか？</translation>
    </message>
    <message>
        <source>It is removed from all your applications.</source>
        <translation>お使いのすべてのアプリケーションから削除されます。</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>停止</translation>
    </message>
    <message>
        <source>Update All</source>
        <translation>すべてアップデート</translation>
    </message>
    <message>
        <source>Stop after the current Plug-In</source>
        <translation>現在のプラグインの後で停止</translation>
    </message>
    <message>
        <source>Stopping after the current Plug-In…</source>
        <translation>現在のプラグインの後で停止します…</translation>
    </message>
    <message>
        <source>Updating %1 of %2…</source>
        <translation>%2 件中 %1 件目をアップデート中…</translation>
    </message>
    <message>
        <source>Search Plug-Ins</source>
        <translation>プラグインを検索</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>検索</translation>
    </message>
    <message>
        <source>No Plug-In has such a name.</source>
        <translation>その名前のプラグインはありません。</translation>
    </message>
    <message>
        <source>&amp;Undo</source>
        <translation>元に戻す(&amp;U)</translation>
    </message>
    <message>
        <source>Removed %1.</source>
        <translation>%1 を削除しました。</translation>
    </message>
    <message>
        <source>Removed %1 targets.</source>
        <translation>%1 件のインストール先を削除しました。</translation>
    </message>
    <message>
        <source>'%1' is already in the list.</source>
        <translation>「%1」はすでにリストにあります。</translation>
    </message>
    <message>
        <source>No known version of InDesign or InCopy stands beside this folder. Choose the application and its version.</source>
        <translation>このフォルダーの隣に InDesign または InCopy の既知のバージョンが見つかりません。アプリケーションとバージョンを選択してください。</translation>
    </message>
    <message>
        <source>Used by scheduled updates, which are not set up on this computer.</source>
        <translation>スケジュールされたアップデートで使用されます。このコンピューターでは設定されていません。</translation>
    </message>
    <message>
        <source>Changes are kept in memory and stored as soon as possible. Reason: %1</source>
        <translation>変更はメモリに保持され、可能になり次第保存されます。理由: %1</translation>
    </message>
    <message>
        <source>Everything that could be read is in use. The damaged file was kept as %1.</source>
        <translation>読み取れたデータを使用しています。破損したファイルは %1 として保存されました。</translation>
    </message>
    <message>
        <source>The folder %1 could not be created.</source>
        <translation>フォルダー %1 を作成できませんでした。</translation>
    </message>
    <message>
        <source>The plug-in name &quot;%1&quot; cannot be used as a file name.</source>
        <translation>プラグイン名「%1」はファイル名として使用できません。</translation>
    </message>
    <message>
        <source>an entry is larger than its stated size (%1)</source>
        <translation>項目が記録されたサイズより大きくなっています（%1）</translation>
    </message>
    <message>
        <source>it is not a zip archive</source>
        <translation>zip アーカイブではありません</translation>
    </message>
    <message>
        <source>the library for archives is missing</source>
        <translation>アーカイブ用のライブラリがありません</translation>
    </message>
    <message>
        <source>the process that speaks HTTP cannot be started</source>
        <translation>HTTP を扱うプロセスを起動できません</translation>
    </message>
    <message>
        <source>the entry points outside the folder</source>
        <translation>項目がフォルダーの外を指しています</translation>
    </message>
    <message>
        <source>the entry is nested too deeply</source>
        <translation>項目の階層が深すぎます</translation>
    </message>
    <message>
        <source>the entry would run with another user&apos;s rights</source>
        <translation>項目が別のユーザーの権限で実行されます</translation>
    </message>
    <message>
        <source>the entry is a link that points outside the folder</source>
        <translation>項目がフォルダーの外を指すリンクです</translation>
    </message>
    <message>
        <source>its unpacked contents are too large</source>
        <translation>展開後のサイズが大きすぎます</translation>
    </message>
    <message>
        <source>the folder no longer exists</source>
        <translation>フォルダーはもう存在しません</translation>
    </message>
    <message>
        <source>the archive contains no %1</source>
        <translation>アーカイブに %1 が含まれていません</translation>
    </message>
    <message>
        <source>the archive does not match the catalogue</source>
        <translation>アーカイブがカタログと異なります</translation>
    </message>
    <message>
        <source>its unpacked contents are too large for the size of the archive</source>
        <translation>展開後のサイズがアーカイブのサイズに対して大きすぎます</translation>
    </message>
    <message>
        <source>the entry is inside something that is not a folder</source>
        <translation>項目がフォルダーではないものの中にあります</translation>
    </message>
    <message>
        <source>A secure connection to the server could not be established: %1</source>
        <translation>サーバーへの安全な接続を確立できませんでした: %1</translation>
    </message>
    <message>
        <source>The server&apos;s certificate is not trusted: %1</source>
        <translation>サーバーの証明書は信頼されていません: %1</translation>
    </message>
    <message>
        <source>Reload Icons</source>
        <translation>アイコンを再読み込み</translation>
    </message>
    <message>
        <source>Sign in to install Plug-Ins with this account and to keep them up to date.</source>
        <translation>このアカウントでプラグインをインストールし、最新に保つには、サインインしてください。</translation>
    </message>
    <message>
        <source>&amp;Email:</source>
        <translation>メールアドレス(&amp;E):</translation>
    </message>
    <message>
        <source>&amp;Update Plug-Ins automatically</source>
        <translation>プラグインを自動的にアップデート(&amp;U)</translation>
    </message>
    <message>
        <source>This setting is managed by your administrator.</source>
        <translation>この設定は管理者によって管理されています。</translation>
    </message>
    <message>
        <source>Plug-Ins are installed into the enabled folders.</source>
        <translation>プラグインは有効なフォルダーにインストールされます。</translation>
    </message>
    <message>
        <source>Neither InDesign nor InCopy was found. Add the Plug-Ins folder of the application.</source>
        <translation>InDesign も InCopy も見つかりませんでした。アプリケーションの Plug-Ins フォルダーを追加してください。</translation>
    </message>
    <message>
        <source>Downloading %1 of %2 kB</source>
        <translation>ダウンロード中 %1 / %2 kB</translation>
    </message>
    <message>
        <source>Downloading %1 kB</source>
        <translation>ダウンロード中 %1 kB</translation>
    </message>
    <message>
        <source>Not available for your applications</source>
        <translation>お使いのアプリケーションには非対応です</translation>
    </message>
    <message>
        <source>&amp;Email address</source>
        <translation>メールアドレス(&amp;E)</translation>
    </message>
    <message>
        <source>Email address</source>
        <translation>メールアドレス</translation>
    </message>
    <message>
        <source>Sign in to install your Plug-Ins and keep them up to date.</source>
        <translation>サインインすると、プラグインをインストールし、最新に保てます。</translation>
    </message>
    <message>
        <source>The service is not responding</source>
        <translation>サービスが応答しません</translation>
    </message>
    <message>
        <source>No response since %1. Your installed Plug-Ins keep working.</source>
        <translation>%1 以降、応答がありません。インストール済みのプラグインは引き続き使えます。</translation>
    </message>
    <message>
        <source>InDesign and InCopy not found</source>
        <translation>InDesign も InCopy も見つかりません</translation>
    </message>
    <message>
        <source>Choose the applications to install Plug-Ins into.</source>
        <translation>プラグインのインストール先を選択してください。</translation>
    </message>
    <message>
        <source>The list is being loaded from the service.</source>
        <translation>サービスから一覧を読み込み中です。</translation>
    </message>
    <message>
        <source>No Plug-Ins are available for this account.</source>
        <translation>このアカウントで利用できるプラグインはありません。</translation>
    </message>
    <message>
        <source>&apos;%1&apos; is not an absolute path.</source>
        <translation>「%1」は絶対パスではありません。</translation>
    </message>
    <message>
        <source>&apos;%1&apos; is not a version: enter the application&apos;s version times ten, from %2 to %3, such as 140 for 14.0.</source>
        <translation>「%1」はバージョンではありません。アプリケーションのバージョンを 10 倍した %2 から %3 までの値（14.0 なら 140）を指定してください。</translation>
    </message>
    <message>
        <source>&apos;%1&apos; is not responding. Try again when its disk or server responds.</source>
        <translation>「%1」が応答しません。ディスクまたはサーバーが応答するようになってから、もう一度お試しください。</translation>
    </message>
    <message>
        <source>&apos;%1&apos; is not a folder.</source>
        <translation>「%1」はフォルダーではありません。</translation>
    </message>
    <message>
        <source>&apos;%1&apos; is the root of the file system, which cannot be used as a Plug-Ins folder.</source>
        <translation>「%1」はファイルシステムのルートであるため、Plug-Ins フォルダーとして使用できません。</translation>
    </message>
    <message>
        <source>The application&apos;s state, its logs and its latest crash reports are included.</source>
        <translation>このアプリケーションの状態、ログ、最新のクラッシュレポートも一緒に送信されます。</translation>
    </message>
    <message>
        <source>This is everything that is sent if you send the report now (%1 bytes).</source>
        <translation>今レポートを送信した場合に送られる内容は、これがすべてです（%1 バイト）。</translation>
    </message>
    <message>
        <source>Your &amp;email address:</source>
        <translation>メールアドレス(&amp;E):</translation>
    </message>
    <message>
        <source>Could not check for updates to Tolvane Brevok.</source>
        <translation>Tolvane Brevok のアップデートを確認できませんでした。</translation>
    </message>
    <message>
        <source>Version %1 is the latest version.</source>
        <translation>バージョン %1 は最新バージョンです。</translation>
    </message>
    <message>
        <source>This version cannot check for updates.</source>
        <translation>このバージョンではアップデートを確認できません。</translation>
    </message>
    <message>
        <source>The system&apos;s software service (PackageKit) is not available.</source>
        <translation>システムのソフトウェアサービス（PackageKit）を利用できません。</translation>
    </message>
    <message>
        <source>The system&apos;s software service did not install the package: %1</source>
        <translation>システムのソフトウェアサービスはパッケージをインストールしませんでした: %1</translation>
    </message>
    <message>
        <source>The system&apos;s software service stopped before the package was installed.</source>
        <translation>システムのソフトウェアサービスは、パッケージをインストールする前に停止しました。</translation>
    </message>
    <message>
        <source>Could not read the file &quot;%1&quot;</source>
        <translation>ファイル「%1」を読み取れませんでした</translation>
    </message>
    <message>
        <source>The privileged helper is not responding.</source>
        <translation>特権ヘルパーが応答しません。</translation>
    </message>
    <message>
        <source>Administrator approval is required and was not given.</source>
        <translation>管理者の承認が必要ですが、得られませんでした。</translation>
    </message>
    <message>
        <source>Setting up the privileged helper ended without a result.</source>
        <translation>特権ヘルパーの設定は結果が得られないまま終了しました。</translation>
    </message>
    <message>
        <source>The privileged helper was installed but does not start.</source>
        <translation>特権ヘルパーはインストールされましたが、起動しません。</translation>
    </message>
    <message>
        <source>The checksum in the catalogue cannot be read.</source>
        <translation>カタログに記載されたチェックサムを読み取れません。</translation>
    </message>
    <message>
        <source>The download does not match the catalogue.</source>
        <translation>ダウンロードした内容がカタログの記載と一致しません。</translation>
    </message>
    <message>
        <source>the reason is not known</source>
        <translation>原因は不明です</translation>
    </message>
    <message>
        <source>something else has taken the folder&apos;s place</source>
        <translation>フォルダーの場所に別のものがあります</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <comment>what failed, and why</comment>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <comment>why something failed, and the details</comment>
        <translation>%1（%2）</translation>
    </message>
    <message>
        <source>InDesign&apos;s latest crash report is included too.</source>
        <translation>InDesign の最新のクラッシュレポートも送信されます。</translation>
    </message>
    <message>
        <source>What you wrote</source>
        <translation>入力した内容</translation>
    </message>
    <message>
        <source>The application</source>
        <translation>アプリケーション</translation>
    </message>
    <message>
        <source>Logs</source>
        <translation>ログ</translation>
    </message>
    <message>
        <source>Crash reports</source>
        <translation>クラッシュレポート</translation>
    </message>
    <message>
        <source>Your Plug-Ins were changed</source>
        <translation>プラグインが変更されました</translation>
    </message>
    <message>
        <source>Installed: %1</source>
        <translation>インストール: %1</translation>
    </message>
    <message>
        <source>Removed: %1</source>
        <translation>削除: %1</translation>
    </message>
    <message>
        <source>Waiting for an update: %1</source>
        <translation>アップデート待ち: %1</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>開く</translation>
    </message>
    <message>
        <source>Used by scheduled updates. Next: %1.</source>
        <translation>スケジュールされたアップデートで使用されます。次回: %1</translation>
    </message>
    <message>
        <source>Clear Search</source>
        <translation>検索を消去</translation>
    </message>
</context>
</TS>
