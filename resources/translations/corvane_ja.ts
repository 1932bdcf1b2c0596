<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ja" sourcelanguage="en">
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
        <translation>メモリ</translation>
    </message>
    <message>
        <source>Storage</source>
        <translation>ストレージ</translation>
    </message>
    <message>
        <source>Sensors</source>
        <translation>センサー</translation>
    </message>
    <message>
        <source>SSD</source>
        <translation>SSD</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>設定</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>終了</translation>
    </message>
    <message>
        <source>Battery</source>
        <translation>バッテリー</translation>
    </message>
    <message>
        <source>Ambient</source>
        <translation>周囲</translation>
    </message>
    <message>
        <source>Other</source>
        <translation>その他</translation>
    </message>
    <message>
        <source>System</source>
        <translation>システム</translation>
    </message>
    <message>
        <source>Nominal</source>
        <translation>正常</translation>
    </message>
    <message>
        <source>Elevated</source>
        <translation>やや高い</translation>
    </message>
    <message>
        <source>High</source>
        <translation>高い</translation>
    </message>
    <message>
        <source>Critical</source>
        <translation>危険</translation>
    </message>
    <message>
        <source>Unknown</source>
        <translation>不明</translation>
    </message>
    <message>
        <source>%@ RPM</source>
        <extracomment>A fan speed; %@ is the number of revolutions per minute, already formatted.</extracomment>
        <translation>%@ 回転/分</translation>
    </message>
    <message>
        <source>Software Update</source>
        <translation>ソフトウェア・アップデート</translation>
    </message>
    <message>
        <source>Corvane %1 is available — you have %2</source>
        <translation>Corvane %1 を利用できます（現在のバージョンは %2）</translation>
    </message>
    <message>
        <source>Read the release notes</source>
        <translation>リリースノートを読む</translation>
    </message>
    <message>
        <source>Skip This Version</source>
        <translation>このバージョンをスキップ</translation>
    </message>
    <message>
        <source>Remind Me Later</source>
        <translation>あとで通知</translation>
    </message>
    <message>
        <source>Install and Relaunch</source>
        <translation>インストールして再起動</translation>
    </message>
    <message>
        <source>Downloading Corvane %1…</source>
        <translation>Corvane %1 をダウンロード中…</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>キャンセル</translation>
    </message>
    <message>
        <source>Installing Corvane %1…</source>
        <translation>Corvane %1 をインストール中…</translation>
    </message>
    <message>
        <source>You're up to date</source>
        <translation>最新の状態です</translation>
    </message>
    <message>
        <source>Corvane %1 is the newest version available.</source>
        <translation>Corvane %1 は利用可能な最新バージョンです。</translation>
    </message>
    <message>
        <source>The update could not be completed.</source>
        <translation>アップデートを完了できませんでした。</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>%@ free</source>
        <translation>空き %@</translation>
    </message>
    <message>
        <source>%@ of %@</source>
        <translation>%@ / %@</translation>
    </message>
    <message>
        <source>1 min</source>
        <translation>1分</translation>
    </message>
    <message>
        <source>15 min</source>
        <translation>15分</translation>
    </message>
    <message>
        <source>5 min</source>
        <translation>5分</translation>
    </message>
    <message>
        <source>Active</source>
        <translation>アクティブ</translation>
    </message>
    <message>
        <source>App Memory</source>
        <translation>アプリメモリ</translation>
    </message>
    <message>
        <source>Available</source>
        <translation>空き</translation>
    </message>
    <message>
        <source>BATTERY</source>
        <translation>バッテリー</translation>
    </message>
    <message>
        <source>Cache</source>
        <translation>キャッシュ</translation>
    </message>
    <message>
        <source>Capacity</source>
        <translation>容量</translation>
    </message>
    <message>
        <source>Charge</source>
        <translation>充電残量</translation>
    </message>
    <message>
        <source>Charging</source>
        <translation>充電中</translation>
    </message>
    <message>
        <source>Compressed</source>
        <translation>圧縮</translation>
    </message>
    <message>
        <source>Cores</source>
        <translation>コア</translation>
    </message>
    <message>
        <source>Cycles</source>
        <translation>充放電回数</translation>
    </message>
    <message>
        <source>DISK</source>
        <translation>ディスク</translation>
    </message>
    <message>
        <source>Device</source>
        <translation>デバイス</translation>
    </message>
    <message>
        <source>Discharging</source>
        <translation>放電中</translation>
    </message>
    <message>
        <source>Draw</source>
        <translation>消費電力</translation>
    </message>
    <message>
        <source>FANS</source>
        <translation>ファン</translation>
    </message>
    <message>
        <source>Fan %lld</source>
        <translation>ファン %lld</translation>
    </message>
    <message>
        <source>Fully Charged</source>
        <translation>フル充電</translation>
    </message>
    <message>
        <source>Health</source>
        <translation>状態</translation>
    </message>
    <message>
        <source>Idle</source>
        <translation>アイドル</translation>
    </message>
    <message>
        <source>LOAD AVERAGE</source>
        <translation>平均負荷</translation>
    </message>
    <message>
        <source>MEMORY</source>
        <translation>メモリ</translation>
    </message>
    <message>
        <source>Memory Used</source>
        <translation>使用済みメモリ</translation>
    </message>
    <message>
        <source>Memory in use</source>
        <translation>使用中のメモリ</translation>
    </message>
    <message>
        <source>No readable hwmon, thermal zone or applesmc sensors</source>
        <translation>hwmon、サーマルゾーン、applesmc に読み取れるセンサーがありません</translation>
    </message>
    <message>
        <source>Normal</source>
        <translation>正常</translation>
    </message>
    <message>
        <source>PAGES</source>
        <translation>ページ</translation>
    </message>
    <message>
        <source>POWER</source>
        <translation>電力</translation>
    </message>
    <message>
        <source>PRESSURE</source>
        <translation>プレッシャー</translation>
    </message>
    <message>
        <source>PROCESSES</source>
        <translation>プロセス</translation>
    </message>
    <message>
        <source>Page Ins</source>
        <translation>ページイン</translation>
    </message>
    <message>
        <source>Page Outs</source>
        <translation>ページアウト</translation>
    </message>
    <message>
        <source>Peak %@ of %@ cores</source>
        <translation>ピーク %@ / %@ コア</translation>
    </message>
    <message>
        <source>Power</source>
        <translation>電力</translation>
    </message>
    <message>
        <source>Power Adapter</source>
        <translation>電源アダプタ</translation>
    </message>
    <message>
        <source>Pressure</source>
        <translation>プレッシャー</translation>
    </message>
    <message>
        <source>Read</source>
        <translation>読み込み</translation>
    </message>
    <message>
        <source>Renderer</source>
        <translation>レンダラー</translation>
    </message>
    <message>
        <source>SWAP MEMORY</source>
        <translation>スワップ</translation>
    </message>
    <message>
        <source>Status</source>
        <translation>状況</translation>
    </message>
    <message>
        <source>TEMPERATURES</source>
        <translation>温度</translation>
    </message>
    <message>
        <source>THERMAL STATE</source>
        <translation>熱状態</translation>
    </message>
    <message>
        <source>Temperature</source>
        <translation>温度</translation>
    </message>
    <message>
        <source>Tiler</source>
        <translation>タイラー</translation>
    </message>
    <message>
        <source>Time Left</source>
        <translation>残り時間</translation>
    </message>
    <message>
        <source>USAGE</source>
        <translation>使用率</translation>
    </message>
    <message>
        <source>Unavailable</source>
        <translation>利用不可</translation>
    </message>
    <message>
        <source>Uptime</source>
        <translation>稼働時間</translation>
    </message>
    <message>
        <source>Used</source>
        <translation>使用済み</translation>
    </message>
    <message>
        <source>User</source>
        <translation>ユーザ</translation>
    </message>
    <message>
        <source>Voltage</source>
        <translation>電圧</translation>
    </message>
    <message>
        <source>Warning</source>
        <translation>警告</translation>
    </message>
    <message>
        <source>Wired</source>
        <translation>固定</translation>
    </message>
    <message>
        <source>Write</source>
        <translation>書き込み</translation>
    </message>
    <message>
        <source>Corvane Settings</source>
        <translation>Corvane 設定</translation>
    </message>
    <message>
        <source>Meters</source>
        <translation>メーター</translation>
    </message>
    <message>
        <source>General</source>
        <translation>一般</translation>
    </message>
    <message>
        <source>Updates</source>
        <translation>アップデート</translation>
    </message>
    <message>
        <source>About</source>
        <translation>情報</translation>
    </message>
    <message>
        <source>Corvane could not save your last change. It stays here and is saved with the next change that goes through.</source>
        <translation>最後の変更を保存できませんでした。変更はここに表示されたままで、次に保存できたときに一緒に保存されます。</translation>
    </message>
    <message>
        <source>Menu Bar</source>
        <translation>メニューバー</translation>
    </message>
    <message>
        <source>Drag, or press Alt+Up or Alt+Down, to reorder. Hidden meters keep their places.</source>
        <translation>ドラッグするか Alt+上 / Alt+下 で並べ替え。非表示のメーターは位置を保ちます。</translation>
    </message>
    <message>
        <source>Readouts</source>
        <translation>表示値</translation>
    </message>
    <message>
        <source>Appearance</source>
        <translation>外観</translation>
    </message>
    <message>
        <source>CPU graph</source>
        <translation>CPU グラフ</translation>
    </message>
    <message>
        <source>Shape</source>
        <translation>形</translation>
    </message>
    <message>
        <source>Labels</source>
        <translation>ラベル</translation>
    </message>
    <message>
        <source>Accents</source>
        <translation>アクセント</translation>
    </message>
    <message>
        <source>CPU fast cores</source>
        <translation>CPU 高性能コア</translation>
    </message>
    <message>
        <source>Custom…</source>
        <translation>カスタム…</translation>
    </message>
    <message>
        <source>Accent</source>
        <translation>アクセント</translation>
    </message>
    <message>
        <source>Corvane</source>
        <translation>Corvane</translation>
    </message>
    <message>
        <source>Show Corvane in the menu bar</source>
        <translation>メニューバーに Corvane を表示</translation>
    </message>
    <message>
        <source>Login</source>
        <translation>ログイン</translation>
    </message>
    <message>
        <source>Start Corvane at login</source>
        <translation>ログイン時に Corvane を起動</translation>
    </message>
    <message>
        <source>Refresh every</source>
        <translation>更新間隔</translation>
    </message>
    <message>
        <source>Temperatures</source>
        <translation>温度</translation>
    </message>
    <message>
        <source>Light</source>
        <translation>ライト</translation>
    </message>
    <message>
        <source>Dark</source>
        <translation>ダーク</translation>
    </message>
    <message>
        <source>Panel appearance</source>
        <translation>パネルの外観</translation>
    </message>
    <message>
        <source>Translucent</source>
        <translation>半透明</translation>
    </message>
    <message>
        <source>Opaque</source>
        <translation>不透明</translation>
    </message>
    <message>
        <source>Panel background</source>
        <translation>パネルの背景</translation>
    </message>
    <message>
        <source>Language</source>
        <translation>言語</translation>
    </message>
    <message>
        <source>Corvane restarts in the new language.</source>
        <translation>Corvane は新しい言語で再起動します。</translation>
    </message>
    <message>
        <source>Check for updates automatically</source>
        <translation>アップデートを自動的に確認</translation>
    </message>
    <message>
        <source>Check Now</source>
        <translation>今すぐ確認</translation>
    </message>
    <message>
        <source>Corvane checks for updates while it runs from its bundle.</source>
        <translation>Corvane はバンドルから実行しているときにアップデートを確認します。</translation>
    </message>
    <message>
        <source>This version</source>
        <translation>このバージョン</translation>
    </message>
    <message>
        <source>Corvane %1</source>
        <translation>Corvane %1</translation>
    </message>
    <message>
        <source>No update offered</source>
        <translation>提供中のアップデートはありません</translation>
    </message>
    <message>
        <source>A system monitor for the menu bar.</source>
        <translation>メニューバーのシステムモニター。</translation>
    </message>
    <message>
        <source>Version</source>
        <translation>バージョン</translation>
    </message>
    <message>
        <source>Build</source>
        <translation>ビルド</translation>
    </message>
    <message>
        <source>Settings file</source>
        <translation>設定ファイル</translation>
    </message>
    <message>
        <source>Documentation</source>
        <translation>ドキュメント</translation>
    </message>
    <message>
        <source>Read me</source>
        <translation>はじめに</translation>
    </message>
    <message>
        <source>How readings are made on Linux</source>
        <translation>Linux での計測方法</translation>
    </message>
    <message>
        <source>Not saved</source>
        <translation>保存されません</translation>
    </message>
    <message>
        <source>Off</source>
        <translation>オフ</translation>
    </message>
    <message>
        <source>Usage</source>
        <translation>使用率</translation>
    </message>
    <message>
        <source>Swap Used</source>
        <translation>使用中のスワップ</translation>
    </message>
    <message>
        <source>Free Space</source>
        <translation>空き容量</translation>
    </message>
    <message>
        <source>Hottest Sensor</source>
        <translation>最も高温のセンサー</translation>
    </message>
    <message>
        <source>GPU Temperature</source>
        <translation>GPU 温度</translation>
    </message>
    <message>
        <source>Fan Speed</source>
        <translation>ファン速度</translation>
    </message>
    <message>
        <source>Bars</source>
        <translation>バー</translation>
    </message>
    <message>
        <source>Wave</source>
        <translation>波形</translation>
    </message>
    <message>
        <source>Compact</source>
        <translation>コンパクト</translation>
    </message>
    <message>
        <source>Pill</source>
        <translation>ピル</translation>
    </message>
    <message>
        <source>Square</source>
        <translation>角型</translation>
    </message>
    <message>
        <source>Icons</source>
        <translation>アイコン</translation>
    </message>
    <message>
        <source>Letters</source>
        <translation>文字</translation>
    </message>
    <message>
        <source>Signal</source>
        <translation>シグナル</translation>
    </message>
    <message>
        <source>Blue</source>
        <translation>ブルー</translation>
    </message>
    <message>
        <source>Indigo</source>
        <translation>インディゴ</translation>
    </message>
    <message>
        <source>Purple</source>
        <translation>パープル</translation>
    </message>
    <message>
        <source>Teal</source>
        <translation>ティール</translation>
    </message>
    <message>
        <source>Pine</source>
        <translation>パイン</translation>
    </message>
    <message>
        <source>Amber</source>
        <translation>アンバー</translation>
    </message>
    <message>
        <source>Graphite</source>
        <translation>グラファイト</translation>
    </message>
    <message>
        <source>Custom</source>
        <translation>カスタム</translation>
    </message>
    <message>
        <source>Celsius</source>
        <translation>摂氏</translation>
    </message>
    <message>
        <source>Fahrenheit</source>
        <translation>華氏</translation>
    </message>
</context>
</TS>
